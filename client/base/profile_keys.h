// What is known about the keys of the driver's profiles.
#pragma once

#include <string_view>

// Whether the key's value opens something: a pass phrase, a key, a password, a PIN.
bool profile_key_is_secret(std::string_view key);
