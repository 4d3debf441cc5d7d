// What all requests share: giving an answer, and taking what the caller sent.
#include <cerrno>
#include <cstring>

#include "base/journal.h"
#include "driver/parts.h"

int driver_answer(driver_request& r, const void* record, size_t size, size_t used) {
  size_t needed = used < size ? used : size - 1;
  if (size <= 2) needed = 1;
  if (r.length < needed) return -EMSGSIZE;
  size_t fitting = size < r.length ? size : r.length;
  r.output.assign(static_cast<const char*>(record), fitting);
  r.has_answer_length = true;
  r.answer_length = static_cast<uint16_t>(fitting);
  return 0;
}

void driver_answer_frame(driver_request& r, const void* record, size_t size) {
  r.frame.assign(static_cast<const char*>(record), size);
}

int driver_take(const driver_request& r, void* record, size_t size) {
  if (r.input.size() < size) return -EMSGSIZE;
  memcpy(record, r.input.data(), size);
  return 0;
}

void driver_decode(driver_request& r, const char* name, const std::string& value) {
  r.decoded.emplace_back(name, value);
}

std::string driver_field(const std::string& list, int index) {
  size_t start = 0;
  for (int i = 0; i < index; ++i) {
    start = list.find(';', start);
    if (start == std::string::npos) return "";
    ++start;
  }
  return list.substr(start, list.find(';', start) - start);
}

bool driver_is_dual_band_chip(const driver_state& state) {
  return strcmp(state.hardware->name, "mt7615") == 0;
}

int64_t driver_now_us(const driver_state& state) {
  return clock_box_us(state.clock, journal_now_us());
}
