#pragma once

#include <cstdint>

// Reads six hexadecimal groups of one or two digits, separated by colons. Never fails and
// reports nothing: from the first mismatch on the bytes are zero, so a text that is no
// address at all gives 00:00:00:00:00:00. Text after the sixth group is ignored.
void parse_mac(const char* text, uint8_t (&mac)[6]);

// For traces: a format and its arguments.
#define MAC_FORMAT "%02x:%02x:%02x:%02x:%02x:%02x"
#define MAC_BYTES(mac) (mac)[0], (mac)[1], (mac)[2], (mac)[3], (mac)[4], (mac)[5]
