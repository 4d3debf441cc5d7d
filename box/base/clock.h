// The time of a box. It begins with the box, runs at the speed that the scenario sets, can be
// paused and advanced, and never goes back.
#pragma once

#include <cstdint>

#include <string>

constexpr const char* kClockPath = "/run/gwbox/clock";  // inside the box: the clock in force

struct box_clock {
  int64_t start_us;  // monotonic time at which the box's time was box_us
  int64_t box_us;
  double speed;  // box seconds per second
  bool paused;   // whatever the speed
};

inline bool clock_runs(const box_clock& clock) {
  return !clock.paused && clock.speed > 0;
}

// Microseconds of box time at that monotonic time.
inline int64_t clock_box_us(const box_clock& clock, int64_t monotonic_us) {
  if (!clock_runs(clock)) return clock.box_us;
  double passed = static_cast<double>(monotonic_us - clock.start_us) * clock.speed;
  return clock.box_us + static_cast<int64_t>(passed);
}

// The box's time is BOX_US at the monotonic time NOW_US, and goes on from there.
void clock_set(box_clock& clock, int64_t box_us, int64_t now_us);

// Changes the speed as of the box time BOX_US, which may be a little ago.
void clock_set_speed(box_clock& clock, double speed, int64_t box_us, int64_t now_us);

// Stops the time or lets it go on.
void clock_pause(box_clock& clock, bool paused, int64_t now_us);

// The clock as one line, and back; false for a text that is none.
std::string clock_text(const box_clock& clock);
[[nodiscard]] bool clock_parse(const std::string& text, box_clock& clock);
