#pragma once

#include <cstddef>
#include <cstdint>

// The driver's power limits, object kObjectPowerLimits, in host byte order.

constexpr uint16_t kObjectPowerLimits = 0x0AA2;

// Power limits: a signed 32-bit count at offset 0, then entries, each with its channel in
// the first byte and the limit in dBm in the fifth. The dual-band chip has a different
// layout.
struct power_layout {
  size_t size;
  size_t first_entry;
  size_t entry_size;
};
constexpr power_layout kPowerMt7615 = {.size = 948, .first_entry = 6, .entry_size = 16};
constexpr power_layout kPowerOthers = {.size = 592, .first_entry = 4, .entry_size = 10};
constexpr size_t kPowerLargest = kPowerMt7615.size;
constexpr size_t kPowerChannel = 0;
constexpr size_t kPowerDbm = 4;
