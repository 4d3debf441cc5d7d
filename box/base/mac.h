// MAC addresses.
#pragma once

#include <cstdint>

#include <array>
#include <string>

using mac_address = std::array<uint8_t, 6>;

// Parses six pairs of hexadecimal digits, of either case, separated by colons. Nothing may follow.
[[nodiscard]] bool mac_parse(const std::string& text, mac_address& mac);

// "02:00:5e:00:00:01"
std::string mac_text(const mac_address& mac);

// The address in the first six bytes.
mac_address mac_at(const void* bytes);
