#pragma once

#include <cstddef>
#include <cstdint>

// The answer to WLAN_GET_BTM_ASSOCIATED_DEVICE: the stations of one BSS as raw
// little-endian bytes, which the management stack reads by these offsets.

constexpr unsigned kBtmListMax = 32;

struct btm_station {
  int32_t rssi;           // of the strongest chain, dBm; -127 without a signal
  int32_t downlink_rate;  // units of 1/1024 Mbit/s, see wlan/rates.h
  int32_t uplink_rate;
  int32_t tx_mcs;
  int32_t rx_mcs;
  uint32_t bytes_sent[2];  // low word first; the driver counts 32 bits
  uint32_t bytes_rcv[2];
  int32_t backhaul_sta;  // 1 in a backhaul BSS
  char mac[17];          // as text, without a terminator
  uint8_t zero_57[2];
  uint8_t flags;  // BTM capability times 8
  uint8_t zero_60[8];
  int32_t is_ht;
  int32_t is_vht;
};
static_assert(sizeof(btm_station) == 76);
static_assert(offsetof(btm_station, bytes_sent) == 20);
static_assert(offsetof(btm_station, bytes_rcv) == 28);
static_assert(offsetof(btm_station, backhaul_sta) == 36);
static_assert(offsetof(btm_station, mac) == 40);
static_assert(offsetof(btm_station, flags) == 59);
static_assert(offsetof(btm_station, is_ht) == 68);
static_assert(offsetof(btm_station, is_vht) == 72);

struct btm_list {
  uint32_t count;
  btm_station stations[kBtmListMax];
};
static_assert(sizeof(btm_list) == 2436);

// Fills a zeroed list with the stations of a BSS. Returns 0, also when the BSS's service
// cannot be read, with an empty list. Returns -1, with the count 0, when the driver
// refuses a table or a station's capability. All failures are reported.
int list_btm_stations(int index, btm_list* list);
