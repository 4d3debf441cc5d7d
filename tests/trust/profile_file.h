#pragma once

#include <string>
#include <vector>

#include "support/gateway.h"

// The 2.4 and 5 GHz profiles as another program on the box sees them, without the
// daemon's store.

// Opens the profile's lock file and takes the lock, LOCK_SH or LOCK_EX; close() releases
// it. Returns -1 after printing the reason.
[[nodiscard]] int lock_profile(const std::string& profile, int operation);

// Reads the profile under the shared lock.
std::string locked_profile(const std::string& profile);

// The value of a key; empty when there is none.
std::string value_in(const std::string& text, const std::string& key);

// Keys, in the order of their lines.
std::vector<std::string> keys_in(const std::string& text);

// Why the text is not a whole profile: it must begin with the keys `first`, in that
// order, and end with a whole line, and further keys may follow once each. Empty when it
// is whole.
std::string incompleteness(const std::string& text, const std::vector<std::string>& first);
