#include "commands/repeat.h"

#include <cstdlib>

#include "base/text.h"

// In milliseconds: whole numbers are the same in floating-point registers of any width.
static constexpr double kShortestMs = 10;
static constexpr double kLongestMs = 86400e3;

static constexpr struct {
  const char* name;
  double milliseconds;
} kUnits[] = {{"", 1000}, {"ms", 1}, {"s", 1000}, {"m", 60e3}, {"h", 3600e3}};

static bool parse_count(const std::string& text, unsigned long* count) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
  *count = strtoul(text.c_str(), nullptr, 10);
  return *count >= 1;
}

// False if `name` is not one of the options. True with an `error` if its value is wrong.
static bool take_one(const std::string& name, const std::string& value, repeat_settings& settings,
                     std::string& error) {
  if (name != "--every" && name != "--count") return false;
  if (name == "--every" && !repeat_parse_time(value, &settings.every))
    error =
        "--every takes a time of 10ms to 24h, such as 500ms, 5s or 1m, not " + text_quote(value);
  if (name == "--count" && !parse_count(value, &settings.count))
    error = "--count takes a number from 1 on, not " + text_quote(value);
  return true;
}

bool repeat_take(std::vector<std::string>& words, repeat_settings& settings, std::string& error) {
  while (words.size() >= 2 && take_one(words[0], words[1], settings, error)) {
    if (!error.empty()) return false;
    words.erase(words.begin(), words.begin() + 2);
  }
  while (words.size() >= 2 && take_one(words[words.size() - 2], words.back(), settings, error)) {
    if (!error.empty()) return false;
    words.resize(words.size() - 2);
  }
  return true;
}

bool repeat_parse_time(const std::string& text, double* seconds) {
  char* end = nullptr;
  const double number = strtod(text.c_str(), &end);
  if (end == text.c_str()) return false;
  for (const auto& unit : kUnits) {
    if (std::string_view(unit.name) != end) continue;
    const double milliseconds = number * unit.milliseconds;
    *seconds = milliseconds / 1000;
    return milliseconds >= kShortestMs && milliseconds <= kLongestMs;
  }
  return false;
}
