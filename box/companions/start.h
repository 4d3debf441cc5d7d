// The companions that run from the start of a box.
#pragma once

#include <cstdint>

// Readable to every companion: monotonic microseconds at the box's start, as a decimal number.
constexpr const char* kCompanionsStartFile = "/run/gwbox/start_us";

struct companions_starting {
  int ready;  // pipe from which a byte comes for each that is ready
};

// Writes that file. Reports what failed.
[[nodiscard]] bool companions_tell_start(int64_t start_us);

// Starts HncInit and hnc-listener. Reports what failed.
[[nodiscard]] bool companions_start(companions_starting& starting);

// Waits until all of them answer. Reports which did not within five seconds.
[[nodiscard]] bool companions_await(companions_starting& starting);
