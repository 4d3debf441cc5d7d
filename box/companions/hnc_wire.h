// Requests to the home network controller's listener and its replies, each in one datagram.
// Numbers are in host byte order; a text ends at its first zero byte or fills its field.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr uint32_t kHncGet = 0;
constexpr uint32_t kHncSet = 1;

// One accepted extender model.
struct hnc_supported {
  int32_t index;
  int32_t row_status;
  char manufacturer[64];
  char model_name[64];
  char model_number[64];
  char firmware_url[256];
  char firmware_file_name[256];
  char firmware_user_name[256];
  char firmware_password[256];
  uint32_t update_time;  // seconds since the epoch
  int32_t config_on_demand;
};
static_assert(sizeof(hnc_supported) == 1232 && offsetof(hnc_supported, update_time) == 1224);

// One extender in the network. Other programs rely only on the size and on last_sync_attempt; the
// widths of the texts are the controller's choice.
struct hnc_extender {
  uint32_t index;
  char mac[24];
  char name[240];
  uint32_t status;
  uint32_t active;
  char manufacturer[160];
  char model_name[160];
  char model_number[160];
  char serial_number[160];
  uint32_t last_sync_attempt;  // seconds since the epoch
  char software_version[128];
  int32_t uplink_type;
  int32_t uplink_rate;
  uint32_t upgrade_available;
  char ip_address[16];
  char uplink_mac[24];
  int32_t rssi;
  char last_error[132];
  char description[256];
};
static_assert(sizeof(hnc_extender) == 1492 && offsetof(hnc_extender, last_sync_attempt) == 916);

struct hnc_request {
  uint32_t type;
  char name[128];
  uint32_t index;
  char value[128];
  hnc_supported supported;  // for a set of a whole row
};
static_assert(sizeof(hnc_request) == 1496 && offsetof(hnc_request, supported) == 264);

struct hnc_reply {
  char value[132];
  hnc_extender extender;
  hnc_supported supported;
  int32_t table_error;  // -1: no such row
};
static_assert(sizeof(hnc_reply) == 2860 && offsetof(hnc_reply, supported) == 1624);
