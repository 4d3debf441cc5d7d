#pragma once

#include <cstdint>

// All requests to the radio driver go through here: private ioctls (wireless extensions,
// struct iwreq in its data form) and a few standard requests. Functions address the
// interface of a 1-based BSS index, "ra" followed by the index minus one; a radio index
// selects ra0 or ra8. Request numbers and sub-commands are the driver's. Each call uses
// its own socket, so any thread may call. They return 1 for success and 0 for failure,
// which they report as an RPC error naming request and sub-command.

constexpr unsigned kRtprivObject = 0x8BE1;        // object query or set, sub-command in the flags
constexpr uint16_t kRtprivSet = 0x8000;           // added to the sub-command of a set
constexpr unsigned kRtprivText = 0x8BE2;          // "Key=Value", as "iwpriv raN set" passes it
constexpr unsigned kRtprivStationTable = 0x8BEF;  // the associated-station table

// Reads an object into `buffer` of `size` bytes. The driver is given one byte less, on
// purpose, and writes at most that many. After a failure these bytes are zeros, whatever
// the driver wrote.
[[nodiscard]] int rtpriv_get_ioctl(int bss, unsigned request, unsigned subcmd, void* buffer,
                                   unsigned size);

// The same, but returns 3 when the driver answers EAGAIN (a site survey is still
// running), reported like any failure. The buffer then keeps what the driver has so far.
constexpr int kRtprivTryAgain = 3;
[[nodiscard]] int rtpriv_get_ioctl_2(int bss, unsigned request, unsigned subcmd, void* buffer,
                                     unsigned size);

// Reads an object of up to 4095 bytes into `buffer` of 4096, which is zeroed first;
// `*out_length` receives the length that the driver returned.
constexpr unsigned kRtprivStructSize = 4096;
[[nodiscard]] int rtpriv_get_int_struct_ioctl(int bss, unsigned request, unsigned subcmd,
                                              void* buffer, unsigned* out_length);

// Reads a 32-bit integer.
[[nodiscard]] int rtpriv_get_int_ioctl(int bss, unsigned request, unsigned subcmd,
                                       int32_t* out_value);

// Sends a text; its terminator is counted when `subcmd` is 0. An empty text still issues
// the request, with a null data part. A text longer than the frame's 16-bit length is
// refused with E2BIG.
[[nodiscard]] int rtpriv_set_ioctl(int bss, unsigned request, unsigned subcmd, const char* text);

// Writes an object: adds kRtprivSet to the sub-command.
[[nodiscard]] int rtpriv_set_ioctl_2(int bss, unsigned request, unsigned subcmd, const void* buffer,
                                     uint16_t length);

// ---- Requests that report nothing: their callers have their own messages.

enum class wireless_result { kDone, kNoSocket, kRefused };

// The bit rate of an interface, bits per second (SIOCGIWRATE).
constexpr unsigned kWirelessGetRate = 0x8B21;
[[nodiscard]] wireless_result wireless_get_rate(int bss, int32_t* bits_per_second);

// The frequency of an interface, mantissa times ten to the exponent (SIOCGIWFREQ); the
// driver returns its channel number.
struct wireless_frequency {
  int32_t mantissa;
  int16_t exponent;
};
[[nodiscard]] wireless_result wireless_get_frequency(int bss, wireless_frequency* frequency);

// An object to set: the sub-command with its set bit, and the record.
struct wireless_object {
  uint16_t flags;
  uint16_t length;
  const void* record;
};

// Sets objects in order, on one socket, until the driver refuses one. Returns how many it
// accepted.
[[nodiscard]] int wireless_set_objects(int sock, int bss, const wireless_object* objects,
                                       int count);

// A socket for that, which the caller closes; -1 on failure.
[[nodiscard]] int wireless_open();
void wireless_close(int sock);
