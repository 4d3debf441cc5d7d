#pragma once

#include <cstdint>

// Requests of the wireless extensions whose failures their callers report in
// words of their own. Interfaces and object sets are as in sys/wext.h: "ra"
// followed by the BSS index minus one.

enum class wireless_result { done, no_socket, refused };

// The bit rate of an interface, bits per second (SIOCGIWRATE).
constexpr unsigned kWirelessGetRate = 0x8B21;
[[nodiscard]] wireless_result wireless_get_rate(int bss, int32_t* bits_per_second);

// The frequency of an interface, mantissa times ten to the exponent
// (SIOCGIWFREQ); the driver answers its channel.
struct wireless_frequency {
  int32_t mantissa;
  int16_t exponent;
};
[[nodiscard]] wireless_result wireless_get_frequency(int bss, wireless_frequency* frequency);

// An object to set: sub-command with its set bit, and the record.
struct wireless_object {
  uint16_t flags;
  uint16_t length;
  const void* record;
};

// Sets objects one after the other, on one socket, until the driver refuses one. Returns how many
// it took.
[[nodiscard]] int wireless_set_objects(int sock, int bss, const wireless_object* objects,
                                       int count);

// The socket for them, -1 when there is none; the caller closes it.
[[nodiscard]] int wireless_open();
void wireless_close(int sock);
