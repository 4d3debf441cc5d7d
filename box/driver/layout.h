// The records that the driver returns and takes, as they lie in a caller's buffer: in host byte
// order, without hidden padding. These definitions are the box's own. Programs that talk to the
// driver have theirs, so that a mistake in either shows.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int kLayoutProbes = 4;
constexpr int kLayoutNonassoc = 16;
constexpr int kLayoutSurveyMax = 128;
constexpr int kLayoutSsids = 8;

struct layout_station {
  uint8_t bss;  // position within the radio
  uint8_t mac[6];
  uint8_t aid;
  uint8_t power_save;
  uint8_t mimo_power_save;
  int8_t rssi[4];  // of each chain, dBm
  uint8_t reserved_14[2];
  uint32_t connected_s;
  uint16_t tx_rate;  // rate words, see driver_rate_word
  uint8_t reserved_22[2];
  uint16_t rx_rate;
  uint8_t reserved_26[6];
  uint32_t tx_packets;
  uint32_t tx_failures;
};
static_assert(sizeof(layout_station) == 40);
static_assert(offsetof(layout_station, mac) == 1 && offsetof(layout_station, aid) == 7);
static_assert(offsetof(layout_station, rssi) == 10);
static_assert(offsetof(layout_station, connected_s) == 16);
static_assert(offsetof(layout_station, tx_rate) == 20 && offsetof(layout_station, rx_rate) == 24);
static_assert(offsetof(layout_station, tx_packets) == 32);

struct layout_stations {
  uint32_t count;
  layout_station entries[128];
};
static_assert(sizeof(layout_stations) == 5124);

struct layout_traffic {
  uint8_t bss;
  uint8_t mac[6];
  uint8_t phy;  // 0 CCK, 1 OFDM, 2 HT, 4 VHT
  uint8_t reserved_8[8];
  uint32_t rx_bytes;
  uint32_t tx_bytes;
  uint32_t rx_packets;
  uint32_t tx_packets;
  uint8_t reserved_32[20];
};
static_assert(sizeof(layout_traffic) == 52);
static_assert(offsetof(layout_traffic, phy) == 7 && offsetof(layout_traffic, rx_bytes) == 16);
static_assert(offsetof(layout_traffic, tx_bytes) == 20);

struct layout_traffics {
  int32_t count;
  layout_traffic entries[128];
};
static_assert(sizeof(layout_traffics) == 6660);

struct layout_counters {
  uint32_t words[14];
};
static_assert(sizeof(layout_counters) == 56);

struct layout_ssid {
  uint8_t reserved_0[8];
  uint32_t rx_bytes;
  uint32_t tx_bytes;
  char ssid[33];
  uint8_t reserved_49[47];
};
static_assert(sizeof(layout_ssid) == 96);
static_assert(offsetof(layout_ssid, rx_bytes) == 8 && offsetof(layout_ssid, tx_bytes) == 12);

struct layout_ssids {
  int32_t count;
  layout_ssid entries[kLayoutSsids];
};
static_assert(sizeof(layout_ssids) == 772);

struct layout_load {
  uint32_t period;
  uint32_t reserved_4[3];
  uint32_t busy;
};
static_assert(sizeof(layout_load) == 20 && offsetof(layout_load, busy) == 16);

struct layout_neighbour {
  uint8_t bssid[6];
  uint8_t channel;
  int8_t rssi;
  char ssid[33];
  char security[23];
  char mode[15];
  uint8_t reserved_79[21];
};
static_assert(sizeof(layout_neighbour) == 100);

struct layout_survey {
  uint32_t count;
  layout_neighbour entries[kLayoutSurveyMax];
  uint8_t busiest[360];  // number of networks, by channel number
};
static_assert(sizeof(layout_survey) == 13164);
static_assert(offsetof(layout_survey, busiest) == 12804);

struct layout_steer {
  uint8_t mac[6];
  uint8_t padding[2];
  uint32_t kind;  // 0 blacklist, 1 after a transition request
  int32_t action;
  int32_t seconds;
};
static_assert(sizeof(layout_steer) == 20 && offsetof(layout_steer, kind) == 8);

struct layout_action_frame {
  uint32_t category;
  uint8_t mac[6];
  uint8_t body[1024];
};
static_assert(offsetof(layout_action_frame, body) == 10);
constexpr size_t kLayoutActionFrameSize = 1034;

struct layout_station_btm {
  uint8_t kind;  // 4: of a station
  uint8_t capable;
  uint8_t mac[6];
  uint8_t reserved_8[2];
};
static_assert(sizeof(layout_station_btm) == 10 && offsetof(layout_station_btm, mac) == 2);

struct layout_probe {
  int8_t rssi;
  uint8_t padding[3];
  int32_t date[6];  // year, month, day, hour, minute, second
};
static_assert(sizeof(layout_probe) == 28 && offsetof(layout_probe, date) == 4);

struct layout_nonassoc {
  uint8_t mac[6];
  uint8_t count;
  uint8_t newest;  // 1 to 4
  layout_probe probes[kLayoutProbes];
};
static_assert(sizeof(layout_nonassoc) == 120 && offsetof(layout_nonassoc, probes) == 8);

struct layout_nonassocs {
  layout_nonassoc entries[kLayoutNonassoc];
  uint8_t count;
  uint8_t reserved_1921[3];
};
static_assert(sizeof(layout_nonassocs) == 1924 && offsetof(layout_nonassocs, count) == 1920);

// Transmit power limits: one layout for the chips of one band, another for the dual-band chip.
constexpr int kLayoutPowerMax = 58;

struct layout_power_small {
  uint8_t channel;
  uint8_t reserved_1[3];
  uint8_t dbm;
  uint8_t reserved_5[5];
};
static_assert(sizeof(layout_power_small) == 10 && offsetof(layout_power_small, dbm) == 4);

struct layout_powers_small {
  int32_t count;
  layout_power_small entries[kLayoutPowerMax];
  uint8_t reserved_584[8];
};
static_assert(sizeof(layout_powers_small) == 592);

struct layout_power_large {
  uint8_t channel;
  uint8_t reserved_1[3];
  uint8_t dbm;
  uint8_t reserved_5[11];
};
static_assert(sizeof(layout_power_large) == 16 && offsetof(layout_power_large, dbm) == 4);

struct layout_powers_large {
  int32_t count;
  uint8_t reserved_4[2];
  layout_power_large entries[kLayoutPowerMax];
  uint8_t reserved_934[14];
};
static_assert(sizeof(layout_powers_large) == 948);
static_assert(offsetof(layout_powers_large, entries) == 6);

// Answers of the standard requests that fit in the request frame itself.
struct layout_frequency {
  int32_t mantissa;
  int16_t exponent;
  uint8_t list_index;
  uint8_t flags;
};
static_assert(sizeof(layout_frequency) == 8);

struct layout_parameter {
  int32_t value;
  uint8_t fixed;
  uint8_t disabled;
  uint16_t flags;
};
static_assert(sizeof(layout_parameter) == 8);

struct layout_address {
  uint16_t family;  // 1: a hardware address
  uint8_t mac[6];
  uint8_t rest[8];
};
static_assert(sizeof(layout_address) == 16);
