#pragma once

#include <string>
#include <vector>

// Shared by the steering tests.

// Two stations of gwbox's usual scenario: one on ra0 that supports transition requests
// and may move to ra8, and one on ra8 that does not support them.
constexpr char kStation[] = "02:00:5e:00:00:01";

// Brings both radios up and marks the driver as ready.
void bring_radios_up();

// The requests for an object that reached the driver, the last of them, and a member of a
// request as text, "(none)" when it is missing.
std::vector<std::string> requests_of(const std::string& object);
std::string last_of(const std::string& object);
std::string member_of(const std::string& request, const std::string& name);

void remove_key(const std::string& profile, const std::string& key);

std::string bytes_of(uint32_t value, size_t size = 4);
