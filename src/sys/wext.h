#pragma once

#include <cstdint>

// Private ioctls of the radio driver (wireless extensions, struct iwreq in its
// data form). Every function addresses the interface of a 1-based BSS index,
// "ra" followed by the index minus one; a radio index selects ra0 or ra8.
// Request numbers and sub-commands are the driver's. Each call uses a socket
// of its own; all may be called from any thread. They return 1 for success and
// 0 for failure, which they report as an RPC error naming request and
// sub-command.

constexpr unsigned kRtprivObject = 0x8BE1;        // object query or set, sub-command in the flags
constexpr uint16_t kRtprivSet = 0x8000;           // beside the sub-command of a set
constexpr unsigned kRtprivText = 0x8BE2;          // "Key=Value", as "iwpriv raN set" passes it
constexpr unsigned kRtprivStationTable = 0x8BEF;  // the associated-station table

// Reads an object into `buffer` of `size` bytes. The driver is told one byte
// less than the buffer holds, on purpose, and writes at most that many: these
// bytes are zeros after a failure, whatever the driver wrote before it failed.
[[nodiscard]] int rtpriv_get_ioctl(int bss, unsigned request, unsigned subcmd, void* buffer,
                                   unsigned size);

// The same; returns 3 when the driver answers EAGAIN (try again: a site survey
// is still running), after reporting it like any failure. The buffer then keeps
// what the driver has so far.
constexpr int kRtprivTryAgain = 3;
[[nodiscard]] int rtpriv_get_ioctl_2(int bss, unsigned request, unsigned subcmd, void* buffer,
                                     unsigned size);

// Reads an object of up to 4095 bytes into `buffer` of 4096, which is zeroed
// first; `*out_length` receives the length that the driver returned.
constexpr unsigned kRtprivStructSize = 4096;
[[nodiscard]] int rtpriv_get_int_struct_ioctl(int bss, unsigned request, unsigned subcmd,
                                              void* buffer, unsigned* out_length);

// Reads a 32-bit integer.
[[nodiscard]] int rtpriv_get_int_ioctl(int bss, unsigned request, unsigned subcmd,
                                       int32_t* out_value);

// Sends a text; its terminator is counted when `subcmd` is 0. An empty text
// still issues the request, with a null data part. A text beyond the frame's
// 16-bit length is refused with E2BIG.
[[nodiscard]] int rtpriv_set_ioctl(int bss, unsigned request, unsigned subcmd, const char* text);

// Writes an object: the sub-command goes out with kRtprivSet.
[[nodiscard]] int rtpriv_set_ioctl_2(int bss, unsigned request, unsigned subcmd, const void* buffer,
                                     uint16_t length);
