// The driver's requests by number and by name. The numbers are those of the wireless extensions;
// private ones start at 0x8BE0.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

constexpr uint32_t kRequestGetPriv = 0x8B0D;   // list of the private requests
constexpr uint32_t kRequestObject = 0x8BE1;    // object query or set, sub-command in the flags
constexpr uint32_t kRequestSetText = 0x8BE2;   // one Key=Value text
constexpr uint32_t kRequestE2p = 0x8BE7;       // reads and writes the EEPROM, by text
constexpr uint32_t kRequestStations = 0x8BEF;  // table of the associated stations
constexpr uint16_t kRequestSetFlag = 0x8000;   // in the flags: a set, not a query

// True if the request's flags are a sub-command, of which kRequestSetFlag is not a part.
bool request_has_sub(uint32_t request);

// The request's name in the journal, such as "set", "query" or "object_set"; or "unknown".
const char* request_name(uint32_t request, uint16_t flags);

// The name of an object of kRequestObject, such as "survey" for 0x069B; null for an unknown one.
const char* request_object_name(uint16_t sub);

// The request or object with that name, such as "set" or "survey"; false for an unknown one.
[[nodiscard]] bool request_find(const std::string& name, uint32_t& request, bool& has_sub,
                                uint16_t& sub);

// All names that request_find knows.
std::vector<std::string> request_names();
