#pragma once

#include <cstddef>
#include <cstdint>

// The driver's channel load record, object kObjectChannelLoad, in host byte order.

constexpr uint16_t kObjectChannelLoad = 0x0693;

// How long the channel was busy, in the same unit as the period.
struct channel_load_record {
  uint32_t period;
  uint8_t unused[12];
  uint32_t busy;
};
static_assert(sizeof(channel_load_record) == 20 && offsetof(channel_load_record, busy) == 16);
