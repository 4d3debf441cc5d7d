#include "lying_driver.h"

#include <linux/wireless.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <map>

struct lie {
  std::string bytes;
  int error;
};

static std::map<uint16_t, lie>& answers() {
  static std::map<uint16_t, lie> by_object;
  return by_object;
}

static constexpr unsigned kObjects = 0x8BE1;
static constexpr unsigned kStations = 0x8BEF;  // has no object: stored under 0

static const iw_freq* frequency_answer;

void answer_object_with(uint16_t sub, const std::string& bytes, int error) {
  answers()[sub] = {bytes, error};
}

void answer_stations_with(const std::string& bytes, int error) {
  answers()[0] = {bytes, error};
}

void answer_frequency_with(int32_t mantissa, int16_t exponent) {
  static iw_freq frequency;
  frequency = {mantissa, exponent, 0, 0};
  frequency_answer = &frequency;
}

static int watched_object = -1;
static std::string noted_buffer;

void watch_queries_of(uint16_t sub) {
  watched_object = sub;
}

std::string watched_buffer() {
  return noted_buffer;
}

static int answer_with(const lie& answer, iwreq* frame) {
  const size_t room = std::min<size_t>(frame->u.data.length, answer.bytes.size());
  memcpy(frame->u.data.pointer, answer.bytes.data(), room);
  if (answer.error == 0) return 0;
  errno = answer.error;
  return -1;
}

// This program calls this function instead of the C library's.
extern "C" int ioctl(int file, unsigned long request, ...) noexcept {
  va_list list;
  va_start(list, request);
  void* argument = va_arg(list, void*);
  va_end(list);
  iwreq* frame = static_cast<iwreq*>(argument);
  if (request == kObjects || request == kStations) {
    if (request == kObjects && frame->u.data.flags == watched_object) {
      noted_buffer.assign(static_cast<const char*>(frame->u.data.pointer),
                          frame->u.data.length + 1);
    }
    const auto answer = answers().find(frame->u.data.flags);
    if (answer != answers().end()) return answer_with(answer->second, frame);
  }
  if (request == SIOCGIWFREQ && frequency_answer != nullptr) {
    frame->u.freq = *frequency_answer;
    return 0;
  }
  return static_cast<int>(syscall(SYS_ioctl, file, request, argument));
}
