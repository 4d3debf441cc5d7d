#pragma once

#include <cstdint>

#include "wlan/station_layout.h"

// Byte counters of BSSes and stations.

// Bytes of one BSS since the start of the service. RPC thread only.
struct byte_counter {
  uint64_t received;
  uint64_t sent;
};

// Indexed by the BSS's position within its radio.
extern byte_counter mbss_stat_24g[kSsidsMax];
extern byte_counter mbss_stat_5g[kSsidsMax];

// Adds what the driver has counted since the last call to the counters of the radio's
// BSSes. 0, or -1 with a message when the driver does not answer.
int wlan_getSSIDTxRxBytes(int radio);

// One direction, &byte_counter::sent or ::received, of one BSS or summed over a radio; 0
// for an index that belongs to no radio.
[[nodiscard]] uint64_t bss_bytes(int bss, uint64_t byte_counter::*direction);
[[nodiscard]] uint64_t radio_bytes(int bss, uint64_t byte_counter::*direction);

// Bytes of a BSS, or of all BSSes of its radio, after updating the counters. 0, or -1 for
// an index that belongs to no radio or when the driver does not answer, with 0 bytes.
int wlan_getSSIDBytesSent(int bss, uint64_t* bytes);
int wlan_getSSIDBytesReceived(int bss, uint64_t* bytes);
int wlan_getRadioBytesSent(int bss, uint64_t* bytes);
int wlan_getRadioBytesReceived(int bss, uint64_t* bytes);

// Copies the driver's statistics of all stations of the radio of `bss`, unchanged, into a
// table that the caller has zeroed. 0, or -1 when the driver does not answer.
int wlan_getAssocDevicesStatistics(int bss, driver_statistics_table* table);
