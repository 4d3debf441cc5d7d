// Wireless requests: the driver's own.
#include <linux/audit.h>
#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "gateway/around.h"
#include "gateway/call.h"
#include "host/interfaces.h"

// The request frame as the caller lays it out: the interface name, then pointer, length and
// flags, with pointers of the caller's own width.
static constexpr size_t kNameSize = 16;
static constexpr size_t kFrameSize = 32;
static constexpr size_t kPointerAt = 16;

static uint16_t word_at(const char* frame, size_t at) {
  uint16_t word;
  memcpy(&word, frame + at, sizeof word);
  return word;
}

static bool read_frame(trap_call& c, std::string& interface) {
  char frame[kFrameSize] = {};
  if (!caller_read(c.tid, c.arguments[2], frame, sizeof frame)) return false;
  interface.assign(frame, strnlen(frame, kNameSize - 1));
  size_t width = c.arch == AUDIT_ARCH_I386 ? sizeof(uint32_t) : sizeof(uint64_t);
  memcpy(&c.pointer, frame + kPointerAt, width);
  c.length_at = kPointerAt + width;
  c.asked.length = word_at(frame, c.length_at);
  c.asked.flags = word_at(frame, c.length_at + sizeof(uint16_t));
  return true;
}

static bool read_input(trap_call& c) {
  size_t size = driver_input_size(c.request, c.asked.flags, c.asked.length);
  c.asked.input.resize(size);
  return size == 0 || caller_read(c.tid, c.pointer, c.asked.input.data(), size);
}

static void describe(journal_entry& entry, const trap_call& c) {
  entry.name = request_name(c.request, c.asked.flags);
  entry.has_sub = request_has_sub(c.request);
  entry.sub = c.asked.flags & static_cast<uint16_t>(~kRequestSetFlag);
  if (entry.has_sub) entry.object = request_object_name(entry.sub);
  entry.length = c.asked.length;
}

static int read_wireless(trap_state& trap, trap_call& c, journal_entry& entry) {
  c.asked.request = c.request;
  bool readable = read_frame(c, entry.interface);
  describe(entry, c);
  if (!readable) return -EFAULT;
  c.asked.bss = board_interface_number(entry.interface.c_str());
  bool exists =
      c.asked.bss >= 0 && net_address(trap.socket, entry.interface.c_str(), c.asked.address);
  if (!exists) return -ENODEV;
  if (!read_input(c)) return -EFAULT;
  entry.has_text = c.request == kRequestSetText;
  if (entry.has_text) entry.text = c.asked.input.c_str();
  if (entry.has_sub) entry.bytes = c.asked.input;
  return 0;
}

// Writes the answer only while the caller still waits, and never beyond the room that it announced.
static int write_answer(const trap_state& trap, const trap_call& c) {
  const driver_request& r = c.asked;
  size_t room = driver_room(r.request, r.length);
  if (r.output.size() > room || r.frame.size() > kFrameSize - kPointerAt) abort();
  if (!trap_still_waiting(trap, c)) return -EINTR;
  uint64_t frame = c.arguments[2];
  if (!r.output.empty() && !caller_write(c.tid, c.pointer, r.output.data(), r.output.size())) {
    return -EFAULT;
  }
  if (!r.frame.empty() &&
      !caller_write(c.tid, frame + kPointerAt, r.frame.data(), r.frame.size())) {
    return -EFAULT;
  }
  if (r.has_answer_length &&
      !caller_write(c.tid, frame + c.length_at, &r.answer_length, sizeof r.answer_length)) {
    return -EFAULT;
  }
  if (r.has_answer_flags && !caller_write(c.tid, frame + c.length_at + sizeof(uint16_t),
                                          &r.answer_flags, sizeof r.answer_flags)) {
    return -EFAULT;
  }
  return 0;
}

static void cut_answer(driver_request& r, size_t bytes) {
  if (r.output.size() > bytes) r.output.resize(bytes);
  if (r.answer_length > bytes) r.answer_length = static_cast<uint16_t>(bytes);
}

static void replace_count(driver_request& r, uint32_t count) {
  if (r.output.size() >= sizeof count) memcpy(r.output.data(), &count, sizeof count);
}

static int do_wireless(trap_state& trap, trap_call& c, journal_entry& entry) {
  c.asked.now_us = driver_now_us(trap.driver);
  int status = driver_handle(trap.driver, c.asked);
  around_write_files(trap.driver);
  entry.decoded = c.asked.decoded;
  if (c.has_count) replace_count(c.asked, c.count);
  if (c.is_short) cut_answer(c.asked, c.short_bytes);
  int written = write_answer(trap, c);
  return status != 0 ? status : written;
}

const trap_kind kTrapKindWireless = {read_wireless, do_wireless};
