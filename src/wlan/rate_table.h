#pragma once

#include <cstdint>

// The driver's rates: CCK, OFDM and HT in units of 0.5 Mbit/s, VHT in Mbit/s. getRate
// knows the order.
constexpr unsigned kRateEntries = 470;
extern const int32_t MCSMappingRateTable[kRateEntries];
