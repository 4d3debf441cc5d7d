#include "base/moment.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <ctime>

static tm date_of(time_t seconds) {
  tm date{};
  gmtime_r(&seconds, &date);
  return date;
}

double moment_now() {
  timespec t{};
  clock_gettime(CLOCK_MONOTONIC, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

void moment_sleep_until(double moment) {
  double whole = 0;
  const double part = std::modf(moment, &whole);
  const timespec until = {static_cast<time_t>(whole), static_cast<long>(part * 1e9)};
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
  }
}

double moment_next(double moment, double every) {
  return std::max(moment + every, moment_now());
}

std::string moment_stamp() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const tm date = date_of(now.tv_sec);
  char text[32];
  const size_t length = strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &date);
  snprintf(text + length, sizeof text - length, ".%03ldZ", now.tv_nsec / 1000000);
  return text;
}

std::string moment_text(uint64_t seconds) {
  if (seconds == 0) return "-";
  const tm date = date_of(static_cast<time_t>(seconds));
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%SZ", &date);
  return text;
}
