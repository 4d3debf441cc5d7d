#pragma once

#include <cstdint>

// Traffic counters of a BSS and of a radio: the driver's counters in the order of the
// reply. A counter that cannot be read is 0, and the failure is reported.

// Counters of a BSS and the number of its stations, as the caller gets them.
struct basic_stats {
  uint32_t bytes_sent;
  uint32_t bytes_received;
  uint32_t packets_sent;
  uint32_t packets_received;
  uint32_t associations;
};
static_assert(sizeof(basic_stats) == 20);

// For a BSS or a radio, as the caller gets them.
constexpr int kStatsWords = 11;
constexpr int kRadioStatsWords = 16;
using traffic_stats = uint32_t[kRadioStatsWords];

// Always 0.
int wlan_getBasicStats(int bss, basic_stats* out);

// Ten counters and a 0; the words after the first kStatsWords are unchanged. Always 0.
int wlan_getStats(int bss, traffic_stats& out);

// Sums over the BSSes of the radio of `bss` that are enabled in its profile, added to the
// caller's zeros; some words stay zero. 0, or -1 for an index that belongs to no radio.
int wlan_getRadioStats(int bss, traffic_stats& out);
