// "--every TIME" and "--count N" of the commands that repeat.
#pragma once

#include <string>
#include <vector>

// Seconds after which a call is shown as late, and between updates of how late it is.
inline constexpr double kLateSeconds = 1;

struct repeat_settings {
  double every = 1;         // seconds
  unsigned long count = 0;  // 0: endless
};

// Takes the options off both ends of the words. False: `error` is one line.
bool repeat_take(std::vector<std::string>& words, repeat_settings& settings, std::string& error);

// "1s", "500ms", "5m", "1h" or "2" (seconds), from 10 ms to a day.
bool repeat_parse_time(const std::string& text, double* seconds);
