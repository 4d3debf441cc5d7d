// Makes a dump fit to be handed on.
#pragma once

#include <nlohmann/json.hpp>

// Replaces the values of secrets (pass words and phrases, keys, PINs, UUIDs,
// which hold an address, and frame bodies), credentials in URLs, and every MAC
// address by one of its own, 02:00:00:00:00:01 and on, the same everywhere.
void redact(nlohmann::ordered_json& value);
