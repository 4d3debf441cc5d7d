#include "settings.h"

#include <cstdlib>

#include "text.h"

namespace {

// In milliseconds: whole numbers are the same in registers of any width.
constexpr double kShortest = 10;
constexpr double kLongest = 86400e3;

bool parse_count(const std::string& text, unsigned long* count) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
  *count = strtoul(text.c_str(), nullptr, 10);
  return *count >= 1;
}

}  // namespace

bool settings_take(std::vector<std::string>& words, repeat_settings& settings, std::string& error) {
  while (words.size() >= 2) {
    const std::string& name = words[words.size() - 2];
    const std::string& value = words.back();
    if (name == "--every" && !settings_parse_time(value, &settings.every))
      error = "--every takes a time such as 1s or 500ms, not " + text_quote(value);
    if (name == "--count" && !parse_count(value, &settings.count))
      error = "--count takes a number from 1 on, not " + text_quote(value);
    if (!error.empty()) return false;
    if (name != "--every" && name != "--count") break;
    words.resize(words.size() - 2);
  }
  return true;
}

bool settings_parse_time(const std::string& text, double* seconds) {
  char* end = nullptr;
  const double number = strtod(text.c_str(), &end);
  const std::string unit = end;
  if (end == text.c_str() || (unit != "" && unit != "s" && unit != "ms")) return false;
  const double milliseconds = unit == "ms" ? number : number * 1000;
  *seconds = milliseconds / 1000;
  return milliseconds >= kShortest && milliseconds <= kLongest;
}
