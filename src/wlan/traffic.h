#pragma once

#include <cstdint>

// Traffic counters of a BSS and of a radio: the driver's counters in the order of
// the reply. What each one counts is the driver's business. A counter that cannot
// be read is 0, and the read's failure reported.

constexpr int kBasicStatsWords = 5;
constexpr int kStatsWords = 11;
constexpr int kRadioStatsWords = 16;

// Four counters and the number of associated stations, kBasicStatsWords words of
// 32 bits in `out`. 0 always.
int wlan_getBasicStats(int bss, void* out);

// Ten counters and a 0, kStatsWords words. 0 always.
int wlan_getStats(int bss, uint32_t* out);

// Sums over the BSSes of the radio of `bss` that its profile has enabled, added
// to the caller's kRadioStatsWords zeros; some words stay zero. -1 for an index of
// no radio, else 0.
int wlan_getRadioStats(int bss, uint32_t* out);
