#pragma once

#include <cstddef>
#include <cstdint>

// Stations that are not associated: the driver records the signal strength of
// their probe requests and reports them. Each returns 0, or -1 with a report,
// where nothing else is said. The driver is asked also before its radios are up.

// Whether the driver does it: 1, or 0 when it says that it does not support it,
// which is a success.
int wlan_getNonAssocRptCapable(int radio, int* capable);

// Switches it in the driver, then notes it in the profile; a refusal leaves the
// profile as it was.
int wlan_setNonAssocRptEnable(int radio, int enable);

// The switch as noted. Returns 1, or 0 when there is no note.
int wlan_getNonAssocRptEnable(int radio, int* enable);

// Notes the station that the report is about and names it to the driver. (Its
// getter is in keys.def.)
int wlan_setNonAssocRequestMac(int radio, const char* mac);

// The newest probe of that station. There is room for more stations than one.
constexpr int kNonAssocMacText = 17;  // characters
struct nonassoc_probe {
  int32_t rssi;  // dBm
  int32_t time;  // seconds since 1970; the driver's date is one of the box's time zone
  char mac[kNonAssocMacText];
  uint8_t unused[3];
};
struct nonassoc_answer {
  int32_t valid;  // 1 when probes[0] is filled
  nonassoc_probe probes[32];
};
static_assert(sizeof(nonassoc_probe) == 28 && offsetof(nonassoc_probe, mac) == 8);
static_assert(sizeof(nonassoc_answer) == 900 && offsetof(nonassoc_answer, probes) == 4);

// Fills a nonassoc_answer, which stays as it is when the driver has no probe of
// the station: no failure.
int wlan_getNonAssocRptTable(int radio, nonassoc_answer* answer);
