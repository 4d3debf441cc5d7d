// Station addresses.
#pragma once

#include <cstdint>

#include <array>
#include <string>

using mac_address = std::array<uint8_t, 6>;

// Reads six pairs of hexadecimal digits with colons between, of any case. The whole text.
[[nodiscard]] bool mac_parse(const std::string& text, mac_address& mac);

// "02:00:5e:00:00:01"
std::string mac_text(const mac_address& mac);

// Of the first six bytes there.
mac_address mac_at(const void* bytes);
