#include "trap/faults.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <algorithm>

#include "base/board.h"
#include "client/base/text.h"
#include "trap/requests.h"

static constexpr const char* kHowForms =
    "an errno name such as EAGAIN, delay=MS, short=BYTES or count=NUMBER";
static constexpr int kHighestErrno = 4095;
static constexpr int kLongestDelayMs = 600000;
static constexpr int kHighestCount = 1000000000;
static constexpr size_t kUsedUpKept = 100;

// Decimal or 0x hexadecimal, whole text.
static bool parse_number(const std::string& text, unsigned long highest, unsigned long& number) {
  if (text.empty() || text[0] < '0' || text[0] > '9') return false;
  char* end = nullptr;
  errno = 0;
  number = strtoul(text.c_str(), &end, 0);
  return *end == 0 && errno == 0 && number <= highest;
}

static int errno_of(const std::string& name) {
  for (int number = 1; number < kHighestErrno; ++number) {
    const char* known = strerrorname_np(number);
    if (known && name == known) return number;
  }
  return 0;
}

struct fault_name {
  const char* name;
  uint32_t request;
};

// What is trapped besides the driver's own requests.
static constexpr fault_name kFaultNames[] = {
    {"init_module", kFaultInitModule},
    {"finit_module", kFaultFinitModule},
    {"delete_module", kFaultDeleteModule},
    {"vlan", kFaultVlan},
};

static bool parse_name(const std::string& name, fault_rule& rule) {
  for (const fault_name& call : kFaultNames) {
    if (name != call.name) continue;
    rule.request = call.request;
    return true;
  }
  return request_find(name, rule.request, rule.has_sub, rule.sub);
}

static bool is_module_call(uint32_t request) {
  return request == kFaultInitModule || request == kFaultFinitModule ||
         request == kFaultDeleteModule;
}

// A VLAN may be asked for on any device; all other requests name a radio's interface.
static bool check_interface(const fault_rule& rule, std::string& wrong) {
  if (rule.interface.empty() || rule.request == kFaultVlan) return true;
  if (is_module_call(rule.request)) {
    wrong = "module calls have no interface";
  } else if (board_interface_number(rule.interface.c_str()) < 0) {
    wrong = "\"" + rule.interface + "\" is not a radio interface: expected ra0 to ra" +
            std::to_string(kBoardMaxInterfaces - 1);
  }
  return wrong.empty();
}

static bool parse_what(const std::string& what, fault_rule& rule) {
  std::string request = what;
  if (size_t at = request.find('@'); at != std::string::npos) {
    rule.interface = request.substr(at + 1);
    request.resize(at);
    if (rule.interface.empty()) return false;
  }
  if (parse_name(request, rule)) return true;
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

// What HOW starts with when a number follows, and the highest number.
struct how_row {
  const char* head;
  unsigned long highest;
  void (*apply)(fault_rule& rule, unsigned long number);
};

static constexpr how_row kHows[] = {
    {"delay=", kLongestDelayMs,
     [](fault_rule& r, unsigned long n) { r.delay_ms = static_cast<int>(n); }},
    {"short=", UINT16_MAX,
     [](fault_rule& r, unsigned long n) {
       r.is_short = true;
       r.short_bytes = static_cast<int>(n);
     }},
    {"count=", UINT32_MAX,
     [](fault_rule& r, unsigned long n) {
       r.has_count = true;
       r.count = static_cast<uint32_t>(n);
     }},
};

static bool parse_how(const std::string& how, fault_rule& rule) {
  for (const how_row& row : kHows) {
    if (!how.starts_with(row.head)) continue;
    unsigned long number = 0;
    if (!parse_number(how.substr(strlen(row.head)), row.highest, number)) return false;
    row.apply(rule, number);
    return true;
  }
  rule.error = errno_of(how);
  return rule.error != 0;
}

std::vector<std::string> fault_names() {
  std::vector<std::string> names;
  for (const fault_name& call : kFaultNames)
    names.push_back(call.name);
  for (const std::string& name : request_names())
    names.push_back(name);
  return names;
}

std::vector<std::string> fault_hows() {
  std::vector<std::string> hows;
  for (const how_row& row : kHows)
    hows.push_back(row.head);
  for (int number = 1; number < kHighestErrno; ++number) {
    if (const char* name = strerrorname_np(number)) hows.push_back(name);
  }
  std::sort(hows.begin() + std::size(kHows), hows.end());
  return hows;
}

static std::string known_names() {
  std::string names;
  for (const std::string& name : fault_names())
    names += (names.empty() ? "" : ", ") + name;
  return names;
}

bool fault_parse(const std::string& what, const std::string& how, int count, fault_rule& rule,
                 std::string& wrong) {
  rule = {};
  rule.what = what;
  rule.how = how;
  rule.left = count;
  wrong.clear();
  if (!parse_what(what, rule)) {
    wrong = "\"" + what +
            "\" is not a request: expected one such as 0x8BE1:0x069B or 0x8BE2@ra8, or one of " +
            known_names();
    return false;
  }
  if (!check_interface(rule, wrong)) return false;
  if (!parse_how(how, rule)) {
    wrong = "\"" + how + "\" is not a failure: expected " + kHowForms;
    return false;
  }
  return true;
}

bool fault_parse_count(const std::string& text, int& count) {
  unsigned long number = 0;
  if (!parse_number(text, kHighestCount, number) || number == 0) return false;
  count = static_cast<int>(number);
  return true;
}

bool fault_parse_words(const std::vector<std::string>& words, fault_rule& rule,
                       std::string& wrong) {
  int count = 1;
  wrong = "expected WHAT HOW [COUNT]";
  if (words.size() == 1) wrong = text_quote(words[0]) + " needs HOW: " + kHowForms;
  if (words.size() < 2 || words.size() > 3) return false;
  if (words.size() == 3 && !fault_parse_count(words[2], count)) {
    wrong = text_quote(words[2]) + " is not a valid count: expected a whole number from 1 to " +
            std::to_string(kHighestCount);
    return false;
  }
  return fault_parse(words[0], words[1], count, rule, wrong);
}

void fault_add(std::vector<fault_rule>& rules, const fault_rule& rule) {
  auto is_used_up = [](const fault_rule& r) { return r.left == 0; };
  std::erase_if(rules, [&](const fault_rule& r) {
    return is_used_up(r) && r.what == rule.what && r.how == rule.how;
  });
  if (std::count_if(rules.begin(), rules.end(), is_used_up) >=
      static_cast<ptrdiff_t>(kUsedUpKept)) {
    rules.erase(std::find_if(rules.begin(), rules.end(), is_used_up));
  }
  rules.push_back(rule);
}

bool fault_take(std::vector<fault_rule>& rules, uint32_t request, bool has_sub, uint16_t sub,
                const std::string& interface, fault_rule& taken) {
  for (fault_rule& rule : rules) {
    if (rule.left == 0 || rule.request != request) continue;
    if (rule.has_sub && (!has_sub || rule.sub != sub)) continue;
    if (!rule.interface.empty() && rule.interface != interface) continue;
    taken = rule;
    ++rule.hits;
    --rule.left;
    return true;
  }
  return false;
}
