#pragma once

#include <cstdint>

#include "wlan/station_layout.h"

// Records of procedures whose operations do nothing, and what two getters answer
// that is no record of a lower layer.

struct bssid_port {
  uint8_t bssid[6];
  uint16_t port;
};
static_assert(sizeof(bssid_port) == 8);

// One station as wlan_device_t of wlan_config.x lays it out in memory, and four
// bytes more that are always zero.
struct device_image {
  uint8_t device[232];
  uint8_t zero[4];
};
static_assert(sizeof(device_image) == 236);

struct dot11u_attribute {
  int32_t access_network_type;
  uint32_t internet;
  uint32_t asra;
  uint32_t esr;
  uint32_t uesa;
};
static_assert(sizeof(dot11u_attribute) == 20);

// A MAC address as text, its NUL included.
using mac_answer = char[18];
