#pragma once

#include <cstdint>

// Reads six two-digit hexadecimal groups separated by colons. From the first invalid
// group on the bytes are zero.
void parse_mac(const char* text, uint8_t (&mac)[6]);

// For traces: a format and its arguments.
#define MAC_FORMAT "%02x:%02x:%02x:%02x:%02x:%02x"
#define MAC_BYTES(mac) (mac)[0], (mac)[1], (mac)[2], (mac)[3], (mac)[4], (mac)[5]
