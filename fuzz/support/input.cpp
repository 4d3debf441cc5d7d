#include "support/input.h"

uint8_t take_byte(std::string_view* bytes) {
  if (bytes->empty()) return 0;
  const auto value = static_cast<uint8_t>(bytes->front());
  bytes->remove_prefix(1);
  return value;
}

uint16_t take_u16(std::string_view* bytes) {
  const unsigned low = take_byte(bytes);
  return static_cast<uint16_t>(low | unsigned{take_byte(bytes)} << 8);
}

uint32_t take_u32(std::string_view* bytes) {
  const uint32_t low = take_u16(bytes);
  return low | uint32_t{take_u16(bytes)} << 16;
}

std::string_view take_bytes(std::string_view* bytes, size_t count) {
  const std::string_view taken = bytes->substr(0, count);
  bytes->remove_prefix(taken.size());
  return taken;
}

bool next_record(std::string_view* rest, record* out) {
  if (rest->empty()) return false;
  out->type = static_cast<record_type>(take_byte(rest) % kRecordTypes);
  const uint16_t length = take_u16(rest);
  out->bytes = take_bytes(rest, length);
  return true;
}

std::string make_record(record_type type, std::string_view bytes) {
  const size_t length = bytes.size() > UINT16_MAX ? UINT16_MAX : bytes.size();
  std::string out;
  out += static_cast<char>(type);
  out += static_cast<char>(length & 0xFF);
  out += static_cast<char>(length >> 8);
  return out.append(bytes.substr(0, length));
}
