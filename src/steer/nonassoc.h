#pragma once

#include <cstddef>
#include <cstdint>

// Stations that are not associated: the driver records the signal strength of their probe
// requests and reports them. Each returns 0, or -1, reported, unless stated otherwise.
// The driver is queried even before its radios are up.

// 1 when the driver supports it, or 0 when it says that it does not, which is a success.
int wlan_getNonAssocRptCapable(int radio, int* capable);

// Switches it in the driver, then stores it in the profile; a refusal leaves the profile
// unchanged.
int wlan_setNonAssocRptEnable(int radio, int enable);

// The switch as stored. Returns 1, or 0 when none is stored.
int wlan_getNonAssocRptEnable(int radio, int* enable);

// Stores the station that the report is about and sends it to the driver. (Its getter is
// in keys.def.)
int wlan_setNonAssocRequestMac(int radio, const char* mac);

// The newest probe of that station. The record has room for more stations.
constexpr int kNonAssocMacText = 17;  // characters
struct nonassoc_probe {
  int32_t rssi;  // dBm
  int32_t time;  // seconds since 1970; converted from the driver's date in the box's time zone
  char mac[kNonAssocMacText];
  uint8_t unused[3];
};
struct nonassoc_answer {
  int32_t valid;  // 1 when probes[0] is filled
  nonassoc_probe probes[32];
};
static_assert(sizeof(nonassoc_probe) == 28 && offsetof(nonassoc_probe, mac) == 8);
static_assert(sizeof(nonassoc_answer) == 900 && offsetof(nonassoc_answer, probes) == 4);

// Fills a nonassoc_answer. It is unchanged, without an error, when the driver has no
// probe of the station.
int wlan_getNonAssocRptTable(int radio, nonassoc_answer* answer);
