#pragma once

#include <cstddef>
#include <cstdint>

// One datagram to the dynamic channel selection daemon, in host byte order. The daemon
// does not answer.

struct dcs_message {
  uint32_t type;
  uint32_t reserved;
  uint32_t length;  // of a text, including its terminator
  char payload[256];
};
static_assert(offsetof(dcs_message, type) == 0);
static_assert(offsetof(dcs_message, reserved) == 4);
static_assert(offsetof(dcs_message, length) == 8);
static_assert(offsetof(dcs_message, payload) == 12);
static_assert(sizeof(dcs_message) == 268);

constexpr uint32_t kDcsSetting = 1;     // payload: "Key=value"
constexpr uint32_t kDcsDebugLevel = 3;  // payload: int32_t
