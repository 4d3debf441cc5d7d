#include "steer/steer_support.h"

#include <gtest/gtest.h>

#include "unit_support.h"
#include "wlan/driver_gate.h"

void bring_radios_up() {
  EXPECT_EQ(run("ip link set ra0 up; ip link set ra8 up"), "");
  drivers_inited = 1;
}

std::vector<std::string> requests_of(const std::string& object) {
  std::vector<std::string> found;
  for (const std::string& request : driver_requests()) {
    if (member_of(request, "object") == object) found.push_back(request);
  }
  return found;
}

std::string last_of(const std::string& object) {
  const auto found = requests_of(object);
  return found.empty() ? "(none)" : found.back();
}

std::string member_of(const std::string& request, const std::string& name) {
  const std::string begin = "\"" + name + "\":";
  const size_t start = request.find(begin);
  if (start == request.npos) return "(none)";
  const size_t value = start + begin.size();
  if (request[value] != '"')
    return request.substr(value, request.find_first_of(",}", value) - value);
  return request.substr(value + 1, request.find('"', value + 1) - value - 1);
}

void remove_key(const std::string& profile, const std::string& key) {
  std::string text = "\n" + read_file(profile);
  const size_t start = text.find("\n" + key + "=");
  ASSERT_NE(start, text.npos) << key;
  text.erase(start, text.find('\n', start + 1) - start);
  write_file(profile, text.substr(1));
}

std::string bytes_of(uint32_t value, size_t size) {
  std::string bytes;
  for (size_t i = 0; i < size; ++i)
    bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}
