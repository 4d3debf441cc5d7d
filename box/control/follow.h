// The journal of a box, line by line, as it grows.
#pragma once

#include <cstdint>

#include <string>

constexpr int64_t kFollowForever = INT64_MAX;

// Calls TAKE for each line, the oldest first, until it returns false, the box ends or the time is
// UNTIL_US, monotonic. 0: only the lines that are there. ROOT as reach_root gives it. Returns 0, or
// kExitFailed after a report.
[[nodiscard]] int follow_journal(const std::string& root, int64_t until_us,
                                 bool (*take)(const std::string& line, void* context),
                                 void* context);
