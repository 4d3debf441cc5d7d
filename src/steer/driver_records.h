#pragma once

#include <cstddef>
#include <cstdint>

// The driver's records for steering, transition management and stations that are not
// associated: sub-commands of its object request, and layouts in host byte order.

constexpr uint16_t kObjectActionFrame = 0x06B0;
constexpr uint16_t kObjectSteer = 0x06B1;
constexpr uint16_t kObjectOperatingClass = 0x06B2;
constexpr uint16_t kObjectNonAssocCapable = 0x06B3;
constexpr uint16_t kObjectNonAssocEnable = 0x06B4;
constexpr uint16_t kObjectNonAssoc = 0x06B5;  // registers a station and fetches the report
constexpr uint16_t kObjectBtmEnable = 0x094A;

constexpr uint32_t kSteerBlacklist = 0;
constexpr uint32_t kSteerAfterBtm = 1;
struct steer_record {
  uint8_t mac[6];
  uint8_t padding[2];
  uint32_t kind;
  int32_t action;   // of a blacklist entry, 0 to 2
  int32_t seconds;  // of action 2
};
static_assert(sizeof(steer_record) == 20);
static_assert(offsetof(steer_record, kind) == 8 && offsetof(steer_record, action) == 12);
static_assert(offsetof(steer_record, seconds) == 16);

// An action frame to send to a station; the body may be shorter than its field.
constexpr uint32_t kCategoryWnm = 10;
constexpr size_t kActionFrameBody = 1024;
struct [[gnu::packed]] action_frame_record {
  uint32_t category;
  uint8_t mac[6];
  uint8_t body[kActionFrameBody];
};
static_assert(sizeof(action_frame_record) == 1034);
static_assert(offsetof(action_frame_record, mac) == 4 && offsetof(action_frame_record, body) == 10);

// A station's BTM capability.
constexpr unsigned kStationBtm = 0x494A;
constexpr uint8_t kStationBtmAsk = 4;

// Question and answer in one record. The driver gets one byte more than the record has,
// and the request announces all but the last: these nine.
struct driver_station_btm {
  uint8_t kind;     // kStationBtmAsk: of the station with this address
  uint8_t capable;  // the answer
  uint8_t mac[6];
  uint8_t not_used_8;
};
static_assert(sizeof(driver_station_btm) == 9);
static_assert(offsetof(driver_station_btm, mac) == 2);

// A radio's BSS transition management, the driver's answer to kStationBtm without a
// station.
struct btm_state {
  uint8_t enabled;  // 1 while it is on
  uint8_t unused;
};
static_assert(sizeof(btm_state) == 2);

// The record that sets it.
constexpr uint8_t kBtmOfRadio = 2;
struct btm_switch {
  uint8_t kind;  // kBtmOfRadio
  uint8_t unused;
  uint8_t value;
};
static_assert(sizeof(btm_switch) == 3 && offsetof(btm_switch, value) == 2);

// The station to register. The last byte is not announced to the driver.
struct nonassoc_request {
  uint8_t mac[6];
  char first;  // first character of the address as text
};
static_assert(sizeof(nonassoc_request) == 7 && offsetof(nonassoc_request, first) == 6);

// A probe request from a station that is not associated, in local time.
struct probe_record {
  int8_t rssi;
  uint8_t unused[3];
  int32_t year;  // all four digits
  int32_t month;
  int32_t day;
  int32_t hour;
  int32_t minute;
  int32_t second;
};
static_assert(sizeof(probe_record) == 28 && offsetof(probe_record, year) == 4);
static_assert(offsetof(probe_record, second) == 24);

// The last probes of one station, in a ring.
constexpr int kProbes = 4;
struct nonassoc_station {
  uint8_t mac[6];
  uint8_t count;   // of stored probes
  uint8_t newest;  // position of the newest, 1 to 4
  probe_record probes[kProbes];
};
static_assert(sizeof(nonassoc_station) == 120 && offsetof(nonassoc_station, newest) == 7);
static_assert(offsetof(nonassoc_station, probes) == 8);

constexpr int kNonAssocStations = 16;
struct nonassoc_report {
  nonassoc_station stations[kNonAssocStations];
  uint8_t count;
  uint8_t unused[3];
};
static_assert(sizeof(nonassoc_report) == 1924 && offsetof(nonassoc_report, count) == 1920);
