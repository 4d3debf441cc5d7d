#pragma once

#include <cstddef>
#include <cstdint>

// Request and reply of the radio statistics daemon: one datagram each, in host byte
// order. The layout and the fields' meaning are the daemon's.

// Sent with its terminator.
constexpr char kRadstatRequest[] = "result";
static_assert(sizeof kRadstatRequest == 7);

constexpr int kRssiEntries = 37;

struct radstat_reply {
  int32_t cst;     // channel busy share seen by the radio, percent
  int32_t ap_act;  // our own AP's share, percent
  int32_t busy;    // busy time, percent
  int32_t noise_max;
  int32_t noise_min;
  int32_t noise_median;
  int32_t noise_average;
  int32_t retry;  // retransmission rate, percent
  int32_t tx_packets;
  int32_t rx_packets;
  int32_t rssi[kRssiEntries];
  int32_t unused;
};
static_assert(offsetof(radstat_reply, cst) == 0);
static_assert(offsetof(radstat_reply, ap_act) == 4);
static_assert(offsetof(radstat_reply, busy) == 8);
static_assert(offsetof(radstat_reply, noise_max) == 12);
static_assert(offsetof(radstat_reply, noise_min) == 16);
static_assert(offsetof(radstat_reply, noise_median) == 20);
static_assert(offsetof(radstat_reply, noise_average) == 24);
static_assert(offsetof(radstat_reply, retry) == 28);
static_assert(offsetof(radstat_reply, tx_packets) == 32);
static_assert(offsetof(radstat_reply, rx_packets) == 36);
static_assert(offsetof(radstat_reply, rssi) == 40);
static_assert(offsetof(radstat_reply, unused) == 188);
static_assert(sizeof(radstat_reply) == 192);
