#pragma once

#include <cstdint>

#include "wlan/station_layout.h"

// Records of procedures whose operations do nothing, and the answers of two getters that
// are not records of a lower layer.

struct bssid_port {
  uint8_t bssid[6];
  uint16_t port;
};
static_assert(sizeof(bssid_port) == 8);

// One station in the memory layout of wlan_config.x's wlan_device_t, and four more bytes
// that are always zero.
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

// A MAC address as text, including its NUL.
using mac_answer = char[18];
