#pragma once

#include <cstddef>
#include <cstdint>

// The home network controller's listener, a separate process that holds the controller's
// settings and tables. It is queried over UDP with one request and one reply datagram,
// both of a fixed size. The layouts are the listener's; numbers are little-endian, as on
// this machine.

constexpr uint32_t kHncGet = 0;
constexpr uint32_t kHncSet = 1;

// One extender model that the controller accepts. Texts are padded with NULs; one that
// fills its field has no terminator.
struct hnc_supported_hne {
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
static_assert(sizeof(hnc_supported_hne) == 1232);
static_assert(offsetof(hnc_supported_hne, manufacturer) == 8);
static_assert(offsetof(hnc_supported_hne, model_name) == 72);
static_assert(offsetof(hnc_supported_hne, model_number) == 136);
static_assert(offsetof(hnc_supported_hne, firmware_url) == 200);
static_assert(offsetof(hnc_supported_hne, firmware_file_name) == 456);
static_assert(offsetof(hnc_supported_hne, firmware_user_name) == 712);
static_assert(offsetof(hnc_supported_hne, firmware_password) == 968);
static_assert(offsetof(hnc_supported_hne, update_time) == 1224);
static_assert(offsetof(hnc_supported_hne, config_on_demand) == 1228);

// One extender that the controller has seen. The management stack knows the fields; the
// daemon passes them on and traces one.
struct hnc_hne {
  uint8_t fields_before[916];
  uint32_t last_sync_attempt;  // seconds since the epoch
  uint8_t fields_behind[572];
};
static_assert(sizeof(hnc_hne) == 1492);
static_assert(offsetof(hnc_hne, last_sync_attempt) == 916);

// Zero it before use; both texts end with a NUL.
struct hnc_request {
  uint32_t type;                // kHncGet or kHncSet
  char name[128];               // the key
  uint32_t index;               // row or instance; 0 for keys that have none
  char value[128];              // of a set
  hnc_supported_hne supported;  // of a set of a whole row
};
static_assert(sizeof(hnc_request) == 1496);
static_assert(offsetof(hnc_request, name) == 4);
static_assert(offsetof(hnc_request, index) == 132);
static_assert(offsetof(hnc_request, value) == 136);
static_assert(offsetof(hnc_request, supported) == 264);

constexpr int32_t kHncTableError = -1;

struct hnc_reply {
  char value[132];  // text of a simple get, at most 131 bytes; may lack a terminator
  hnc_hne hne;
  hnc_supported_hne supported;
  int32_t table_error;  // kHncTableError: no such row
};
static_assert(sizeof(hnc_reply) == 2860);
static_assert(offsetof(hnc_reply, hne) == 132);
static_assert(offsetof(hnc_reply, supported) == 1624);
static_assert(offsetof(hnc_reply, table_error) == 2856);

// The listener's address: our own end of the internal link.
extern const char* HOST_IP;
extern const uint16_t HOST_PORT;

// Sends the request and waits at most one second for the reply, which is zeroed first:
// missing bytes of a short one read as zeros, and bytes beyond 2860 are dropped. Returns
// 0, or -1 when the request could not be sent or no reply came. Without a receive
// time-out it sends nothing and returns 0.
//
// Each call leaves its socket open. When none can be created the process exits with
// status 1 after a message on standard error.
[[nodiscard]] int sendMessage(const char* host, uint16_t port, const hnc_request* request,
                              hnc_reply* reply);
