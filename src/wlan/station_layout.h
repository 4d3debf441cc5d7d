#pragma once

#include <cstddef>
#include <cstdint>

// The driver's records of stations and counters: little-endian, without padding other
// than the members listed here. "Not used" bytes are passed on unchanged when a whole
// table is.

// ---- Station table, request kRtprivStationTable.

constexpr unsigned kStationsMax = 128;

// RT_802_11_MAC_ENTRY.
struct driver_station {
  uint8_t bss;  // ApIdx: 0-based position of the station's BSS within its radio
  uint8_t mac[6];
  uint8_t aid;
  uint8_t power_save;       // Psm
  uint8_t mimo_power_save;  // MimoPs
  int8_t rssi[4];           // of each chain, dBm; the fourth comes after the three AvgRssi
  uint8_t not_used_14[2];   // up to the next 32-bit boundary
  uint32_t connected_time;  // seconds
  uint16_t tx_rate;         // rate words, see wlan/rates.h; each followed by
  uint8_t not_used_22[2];   // the upper half of its 32-bit word
  uint16_t rx_rate;
  uint8_t not_used_26[6];
  uint32_t tx_packets;
  uint32_t tx_failures;
};
static_assert(sizeof(driver_station) == 40);
static_assert(offsetof(driver_station, mac) == 1);
static_assert(offsetof(driver_station, aid) == 7);
static_assert(offsetof(driver_station, rssi) == 10);
static_assert(offsetof(driver_station, connected_time) == 16);
static_assert(offsetof(driver_station, tx_rate) == 20);
static_assert(offsetof(driver_station, rx_rate) == 24);
static_assert(offsetof(driver_station, tx_packets) == 32);
static_assert(offsetof(driver_station, tx_failures) == 36);

// RT_802_11_MAC_TABLE: the stations of all BSSes of a radio.
struct driver_station_table {
  uint32_t count;  // the driver's claim: read entries up to stations_in()
  driver_station entries[kStationsMax];
};
static_assert(sizeof(driver_station_table) == 5124);
static_assert(offsetof(driver_station_table, entries) == 4);

constexpr unsigned stations_in(const driver_station_table& table) {
  return table.count < kStationsMax ? table.count : kStationsMax;
}

// ---- Station statistics, object kStationStatistics.

constexpr unsigned kStationStatistics = 0x0695;

// OID_802_11_STA_STATISTICS.
struct driver_station_statistics {
  uint8_t bss;
  uint8_t mac[6];
  uint8_t phy_mode;  // after the address: 0 CCK, 1 OFDM, 2 and 3 HT, 4 VHT
  uint8_t not_used_8[8];
  uint32_t received_bytes;  // ReceivedByteCount, then
  uint32_t sent_bytes;      // TransmittedByteCount
  uint8_t not_used_24[28];
};
static_assert(sizeof(driver_station_statistics) == 52);
static_assert(offsetof(driver_station_statistics, mac) == 1);
static_assert(offsetof(driver_station_statistics, phy_mode) == 7);
static_assert(offsetof(driver_station_statistics, received_bytes) == 16);
static_assert(offsetof(driver_station_statistics, sent_bytes) == 20);

struct driver_statistics_table {
  int32_t count;  // the driver's claim: read entries up to stations_in()
  driver_station_statistics entries[kStationsMax];
};
static_assert(sizeof(driver_statistics_table) == 6660);
static_assert(offsetof(driver_statistics_table, entries) == 4);

// Entries to read; none if the count is negative.
constexpr unsigned stations_in(const driver_statistics_table& table) {
  if (table.count < 0) return 0;
  const unsigned count = static_cast<unsigned>(table.count);
  return count < kStationsMax ? count : kStationsMax;
}

// ---- Byte counters of each BSS of a radio, object kSsidStatistics.

constexpr unsigned kSsidStatistics = 0x069A;
constexpr int kSsidsMax = 8;

// Bytes since the last query, in the same order as the station statistics.
struct driver_ssid_statistics {
  uint8_t not_used_0[8];
  uint32_t received_bytes;
  uint32_t sent_bytes;
  uint8_t not_used_16[80];
};
static_assert(sizeof(driver_ssid_statistics) == 96);
static_assert(offsetof(driver_ssid_statistics, received_bytes) == 8);
static_assert(offsetof(driver_ssid_statistics, sent_bytes) == 12);

struct driver_ssid_table {
  int32_t count;  // the driver's claim: entries beyond kSsidsMax do not exist
  driver_ssid_statistics entries[kSsidsMax];
};
static_assert(sizeof(driver_ssid_table) == 772);
static_assert(offsetof(driver_ssid_table, entries) == 4);

// ---- Counters of one BSS, object kBssCounters.

constexpr unsigned kBssCounters = 0x067D;
constexpr int kCounterWords = 14;

struct driver_counters {
  uint32_t words[kCounterWords];
};
static_assert(sizeof(driver_counters) == 56);
