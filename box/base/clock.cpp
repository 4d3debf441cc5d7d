#include "base/clock.h"

#include <cstdio>

void clock_set(box_clock& clock, int64_t box_us, int64_t now_us) {
  clock.box_us = box_us;
  clock.start_us = now_us;
}

void clock_set_speed(box_clock& clock, double speed, int64_t box_us, int64_t now_us) {
  int64_t at_us = now_us;
  if (clock_runs(clock)) {
    double passed = static_cast<double>(box_us - clock.box_us) / clock.speed;
    at_us = clock.start_us + static_cast<int64_t>(passed);
  }
  clock_set(clock, box_us, at_us);
  clock.speed = speed;
}

void clock_pause(box_clock& clock, bool paused, int64_t now_us) {
  clock_set(clock, clock_box_us(clock, now_us), now_us);
  clock.paused = paused;
}

std::string clock_text(const box_clock& clock) {
  char text[128];
  snprintf(text, sizeof text, "%lld %lld %.17g %d\n", static_cast<long long>(clock.start_us),
           static_cast<long long>(clock.box_us), clock.speed, clock.paused);
  return text;
}

bool clock_parse(const std::string& text, box_clock& clock) {
  long long start = 0, box = 0;
  double speed = 0;
  int paused = 0;
  if (sscanf(text.c_str(), "%lld %lld %lf %d", &start, &box, &speed, &paused) != 4) return false;
  clock = {start, box, speed, paused != 0};
  return true;
}
