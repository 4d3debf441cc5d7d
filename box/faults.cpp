#include "faults.h"

#include <errno.h>
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

static constexpr int HIGHEST_ERRNO = 4095;
static constexpr int LONGEST_DELAY_MS = 600000;

// Decimal or 0x hexadecimal, whole text.
static bool parse_number(const std::string& text, unsigned long highest, unsigned long& number) {
  if (text.empty() || text[0] < '0' || text[0] > '9') return false;
  char* end = nullptr;
  errno = 0;
  number = strtoul(text.c_str(), &end, 0);
  return *end == 0 && errno == 0 && number <= highest;
}

static int errno_of(const std::string& name) {
  for (int number = 1; number < HIGHEST_ERRNO; number++) {
    const char* known = strerrorname_np(number);
    if (known && name == known) return number;
  }
  return 0;
}

static bool parse_what(const std::string& what, fault_rule& rule) {
  std::string request = what;
  if (size_t at = request.find('@'); at != std::string::npos) {
    rule.interface = request.substr(at + 1);
    request.resize(at);
    if (rule.interface.empty()) return false;
  }
  unsigned long number = 0;
  if (size_t colon = request.find(':'); colon != std::string::npos) {
    if (!parse_number(request.substr(colon + 1), 0x7FFF, number)) return false;
    rule.has_sub = true;
    rule.sub = static_cast<uint16_t>(number);
    request.resize(colon);
  }
  if (!parse_number(request, UINT32_MAX, number)) return false;
  rule.request = static_cast<uint32_t>(number);
  return true;
}

static bool parse_how(const std::string& how, fault_rule& rule) {
  unsigned long delay = 0;
  if (how.starts_with("delay=")) {
    if (!parse_number(how.substr(strlen("delay=")), LONGEST_DELAY_MS, delay)) return false;
    rule.delay_ms = static_cast<int>(delay);
    return true;
  }
  rule.error = errno_of(how);
  return rule.error != 0;
}

bool fault_parse(const std::string& what, const std::string& how, int count, fault_rule& rule,
                 std::string& wrong) {
  rule = {};
  rule.left = count;
  if (!parse_what(what, rule)) {
    wrong = "\"" + what + "\" is no request: expected such as 0x8BE1, 0x8BE1:0x069B or 0x8BE2@ra8";
    return false;
  }
  if (!parse_how(how, rule)) {
    wrong = "\"" + how + "\" is no failure: expected an errno name such as EAGAIN, or delay=MS";
    return false;
  }
  return true;
}

bool fault_take(std::vector<fault_rule>& rules, uint32_t request, bool has_sub, uint16_t sub,
                const std::string& interface, fault_rule& taken) {
  for (size_t i = 0; i < rules.size(); i++) {
    fault_rule& rule = rules[i];
    if (rule.request != request) continue;
    if (rule.has_sub && (!has_sub || rule.sub != sub)) continue;
    if (!rule.interface.empty() && rule.interface != interface) continue;
    taken = rule;
    if (--rule.left == 0) rules.erase(rules.begin() + static_cast<ptrdiff_t>(i));
    return true;
  }
  return false;
}
