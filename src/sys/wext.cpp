#include "sys/wext.h"

#include <linux/wireless.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "diag/trace.h"
#include "sys/board.h"

// A request to the interface of any BSS index; the kernel refuses one without an
// interface. With a record, its data form.
static iwreq frame_of(int bss) {
  const interface_name name = bss_interface(bss);
  iwreq frame = {};
  static_assert(sizeof name.text <= sizeof frame.ifr_name);
  memcpy(frame.ifr_name, name.text, sizeof name.text);
  return frame;
}

static iwreq frame_of(int bss, const void* record, uint16_t length, uint16_t flags) {
  iwreq frame = frame_of(bss);
  frame.u.data.pointer = const_cast<void*>(record);
  frame.u.data.length = length;
  frame.u.data.flags = flags;
  return frame;
}

// Issues one request on its own socket. Returns 1, or 0 with errno from the request;
// `blank` is what the caller's message has before its newline.
static int issue(const char* caller, unsigned request, unsigned subcmd, iwreq* frame,
                 const char* blank = "") {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (sock < 0) {
    const int reason = errno;
    trace_rpc_error(caller, "socket failed\n");
    errno = reason;
    return 0;
  }
  const int result = ioctl(sock, request, frame);
  const int error = errno;
  close(sock);
  if (result >= 0) return 1;
  trace_rpc_error(caller, "ioctl failed (cmd=0x%X, sub_cmd=0x%X)%s\n", request, subcmd, blank);
  errno = error;
  return 0;
}

int rtpriv_get_ioctl(int bss, unsigned request, unsigned subcmd, void* buffer, unsigned size) {
  iwreq frame =
      frame_of(bss, buffer, static_cast<uint16_t>(size - 1), static_cast<uint16_t>(subcmd));
  if (issue(__func__, request, subcmd, &frame) == 1) return 1;
  memset(buffer, 0, size - 1);
  return 0;
}

int rtpriv_get_ioctl_2(int bss, unsigned request, unsigned subcmd, void* buffer, unsigned size) {
  iwreq frame =
      frame_of(bss, buffer, static_cast<uint16_t>(size - 1), static_cast<uint16_t>(subcmd));
  errno = 0;
  if (issue(__func__, request, subcmd, &frame, " ") == 1) return 1;
  if (errno == EAGAIN) return kRtprivTryAgain;
  memset(buffer, 0, size - 1);
  return 0;
}

int rtpriv_get_int_struct_ioctl(int bss, unsigned request, unsigned subcmd, void* buffer,
                                unsigned* out_length) {
  memset(buffer, 0, kRtprivStructSize);
  iwreq frame = frame_of(bss, buffer, kRtprivStructSize - 1, static_cast<uint16_t>(subcmd));
  if (issue(__func__, request, subcmd, &frame) == 0) return 0;
  *out_length = frame.u.data.length;
  return 1;
}

int rtpriv_get_int_ioctl(int bss, unsigned request, unsigned subcmd, int32_t* out_value) {
  int32_t value = 0;
  iwreq frame = frame_of(bss, &value, sizeof value, static_cast<uint16_t>(subcmd));
  if (issue(__func__, request, subcmd, &frame) == 0) return 0;
  *out_value = value;
  return 1;
}

int rtpriv_set_ioctl(int bss, unsigned request, unsigned subcmd, const char* text) {
  const size_t length = strlen(text) + (subcmd == 0 ? 1 : 0);
  if (length > UINT16_MAX) {
    RPC_ERROR("ioctl failed (cmd=0x%X, sub_cmd=0x%X)\n", request, subcmd);
    errno = E2BIG;
    return 0;
  }
  iwreq frame = frame_of(bss, nullptr, 0, 0);
  if (*text != '\0') {
    frame = frame_of(bss, text, static_cast<uint16_t>(length), static_cast<uint16_t>(subcmd));
  }
  return issue(__func__, request, subcmd, &frame);
}

int rtpriv_set_ioctl_2(int bss, unsigned request, unsigned subcmd, const void* buffer,
                       uint16_t length) {
  iwreq frame = frame_of(bss, buffer, length, static_cast<uint16_t>(subcmd | kRtprivSet));
  return issue(__func__, request, subcmd, &frame);
}

static_assert(kWirelessGetRate == SIOCGIWRATE);

int wireless_open() {
  return socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

void wireless_close(int sock) {
  close(sock);
}

// Queries what the driver returns in the frame itself.
static wireless_result ask(unsigned request, iwreq* frame) {
  const int sock = wireless_open();
  if (sock < 0) return wireless_result::kNoSocket;
  const int result = ioctl(sock, request, frame);
  wireless_close(sock);
  return result < 0 ? wireless_result::kRefused : wireless_result::kDone;
}

wireless_result wireless_get_rate(int bss, int32_t* bits_per_second) {
  iwreq frame = frame_of(bss);
  const wireless_result result = ask(SIOCGIWRATE, &frame);
  if (result == wireless_result::kDone) *bits_per_second = frame.u.bitrate.value;
  return result;
}

wireless_result wireless_get_frequency(int bss, wireless_frequency* frequency) {
  iwreq frame = frame_of(bss);
  const wireless_result result = ask(SIOCGIWFREQ, &frame);
  if (result == wireless_result::kDone) *frequency = {frame.u.freq.m, frame.u.freq.e};
  return result;
}

int wireless_set_objects(int sock, int bss, const wireless_object* objects, int count) {
  for (int taken = 0; taken < count; ++taken) {
    const wireless_object& object = objects[taken];
    iwreq frame = frame_of(bss, object.record, object.length, object.flags);
    if (ioctl(sock, kRtprivObject, &frame) < 0) return taken;
  }
  return count;
}
