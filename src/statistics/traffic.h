#pragma once

#include <cstdint>

// Traffic counters of a BSS and of a radio: the driver's counters in the order of
// the reply. What each one counts is the driver's business. A counter that cannot
// be read is 0, and the read's failure reported.

// Counters of a BSS and the number of its stations, as the caller receives them.
struct basic_stats {
  uint32_t bytes_sent;
  uint32_t bytes_received;
  uint32_t packets_sent;
  uint32_t packets_received;
  uint32_t associations;
};
static_assert(sizeof(basic_stats) == 20);

// Of either kind, as the caller receives them.
constexpr int kStatsWords = 11;
constexpr int kRadioStatsWords = 16;
using traffic_stats = uint32_t[kRadioStatsWords];

// 0 always.
int wlan_getBasicStats(int bss, basic_stats* out);

// Ten counters and a 0; the words after the first kStatsWords stay as they are. 0 always.
int wlan_getStats(int bss, traffic_stats& out);

// Sums over the BSSes of the radio of `bss` that its profile has enabled, added
// to the caller's zeros; some words stay zero. -1 for an index of no radio, else 0.
int wlan_getRadioStats(int bss, traffic_stats& out);
