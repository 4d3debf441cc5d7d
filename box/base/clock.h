// A box's clock. It starts with the box, runs at the speed that the scenario sets, can be paused
// and advanced, and never goes back.
#pragma once

#include <cstdint>

#include <string>

constexpr const char* kClockPath = "/run/gwbox/clock";  // inside the box: the current clock

struct box_clock {
  int64_t start_us;  // monotonic time at which the box's time was box_us
  int64_t box_us;
  double speed;  // box seconds per second
  bool paused;   // stops it whatever the speed
};

inline bool clock_runs(const box_clock& clock) {
  return !clock.paused && clock.speed > 0;
}

// The box's time, in microseconds, at that monotonic time.
inline int64_t clock_box_us(const box_clock& clock, int64_t monotonic_us) {
  if (!clock_runs(clock)) return clock.box_us;
  double passed = static_cast<double>(monotonic_us - clock.start_us) * clock.speed;
  return clock.box_us + static_cast<int64_t>(passed);
}

// Sets the box's time to BOX_US as of the monotonic time NOW_US.
void clock_set(box_clock& clock, int64_t box_us, int64_t now_us);

// Changes the speed as of the box time BOX_US, which may be slightly in the past.
void clock_set_speed(box_clock& clock, double speed, int64_t box_us, int64_t now_us);

// Stops the clock or lets it run again.
void clock_pause(box_clock& clock, bool paused, int64_t now_us);

// The clock as one line, and the clock of such a line; false for any other text.
std::string clock_text(const box_clock& clock);
[[nodiscard]] bool clock_parse(const std::string& text, box_clock& clock);
