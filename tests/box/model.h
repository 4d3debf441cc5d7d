// Shared by the tests of the driver model: a driver outside any box, with the test's own
// clock.
#pragma once

#include <string>

#include "driver/model.h"

// The bytes of an answer. Tests read them at offsets written by hand.
struct answer {
  int status;
  std::string bytes;
  uint8_t u8(size_t at) const { return static_cast<uint8_t>(bytes.at(at)); }
  int8_t s8(size_t at) const { return static_cast<int8_t>(bytes.at(at)); }
  uint16_t u16(size_t at) const;
  uint32_t u32(size_t at) const;
};

constexpr int64_t kSecond = 1000000;

// The stations of the tests' scenarios.
constexpr const char* kFirst = "02:00:5e:00:00:01";
constexpr const char* kOther = "02:00:5e:00:00:02";

// A driver for that board and scenario. The first three interfaces of both bands are up
// at time 0. Radios beacon at once where the scenario does not say how long they take.
void start_model(driver_state& state, const std::string& scenario_text,
                 const char* board = "mt7603+mt7612");

// The profile that start_model uses. `band` is 0 or 1.
std::string model_profile(int band);

int set_key(driver_state& state, int n, const std::string& text, int64_t now_us = -1);
answer query(driver_state& state, int n, uint16_t sub, uint16_t length, int64_t now_us = -1);
answer stations(driver_state& state, int n, int64_t now_us = -1);

// A query or set whose buffer holds `input`.
answer carry(driver_state& state, int n, uint16_t flags, const std::string& input,
             int64_t now_us = -1);

// The six bytes of an address.
std::string mac_bytes(const std::string& text);

// The number N of the station's interface raN; -1 when it is away.
int place_of(driver_state& state, const std::string& mac);
