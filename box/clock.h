// The time of a box: as the monotonic clock since the box began, as fast as its scenario says.
#pragma once

#include <stdint.h>

struct box_clock {
  int64_t start_us;  // monotonic
  double speed;      // box seconds per second
};

// Microseconds of box time at that monotonic time.
inline int64_t clock_box_us(const box_clock& clock, int64_t monotonic_us) {
  return static_cast<int64_t>(static_cast<double>(monotonic_us - clock.start_us) * clock.speed);
}
