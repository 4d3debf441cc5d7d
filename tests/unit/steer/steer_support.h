#pragma once

#include <string>
#include <vector>

// What the tests of steering share.

// Stations of the simulated gateway's usual scenario: one on ra0 that knows
// transition requests and may go to ra8, one on ra8 that does not know them.
constexpr char kStation[] = "02:00:5e:00:00:01";

// Both radios up, and the driver said to be ready.
void bring_radios_up();

// The requests that reached the driver for an object, the last of them, and a
// member of a request as text, "(none)" where there is none.
std::vector<std::string> requests_of(const std::string& object);
std::string last_of(const std::string& object);
std::string member(const std::string& request, const std::string& name);

// Removes a line from a profile.
void remove_key(const std::string& profile, const std::string& key);

// Little-endian bytes of a value.
std::string bytes_of(uint32_t value, size_t size = 4);
