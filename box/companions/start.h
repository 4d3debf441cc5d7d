// The companions that run from the start of a box.
#pragma once

#include <cstdint>

// For the companions: monotonic microseconds at the box's start, as a decimal number.
constexpr const char* kCompanionsStartFile = "/run/gwbox/start_us";

struct companions_starting {
  int ready;  // pipe to which each companion writes a byte when it is ready
};

// Writes kCompanionsStartFile. Reports what failed.
[[nodiscard]] bool companions_tell_start(int64_t start_us);

// Starts HncInit and hnc-listener. Reports what failed.
[[nodiscard]] bool companions_start(companions_starting& starting);

// Waits until both are ready. Reports if they are not within five seconds.
[[nodiscard]] bool companions_await(companions_starting& starting);
