// Faults injected by `gwbox fail`: rules that make matching requests and system calls fail, wait or
// return a wrong answer.
//
// WHAT is request[:sub][@interface]: "0x8BE1", "0x8BE1:0x069B", "0x8BE2@ra8"; or a name, with or
// without @interface: "set", "survey@ra8", "vlan", "init_module".
// HOW is the name of an errno such as "EAGAIN", "delay=MILLISECONDS", "short=BYTES" or
// "count=NUMBER".
#pragma once

#include <cstdint>

#include <string>
#include <vector>

// Module calls have no request numbers, so they get these.
constexpr uint32_t kFaultInitModule = 0x10000001;
constexpr uint32_t kFaultFinitModule = 0x10000002;
constexpr uint32_t kFaultDeleteModule = 0x10000003;
constexpr uint32_t kFaultVlan = 0x8983;  // the VLAN request

constexpr const char* kFaultClear = "clear";  // instead of WHAT: ends all of them
constexpr const char* kFaultList = "list";    // instead of WHAT: lists them

struct fault_rule {
  std::string what, how;  // as they were given
  uint32_t request;
  bool has_sub;
  uint16_t sub;
  std::string interface;  // empty: any
  int error;              // positive errno; 0: none
  int delay_ms;
  bool is_short;  // cuts the answer, and the length reported to the caller, to short_bytes
  int short_bytes;
  bool has_count;  // replaces the answer's first 32 bits, the count of a table, with count
  uint32_t count;
  int hits;  // how many requests it has applied to
  int left;  // how many it still applies to; 0: used up, kept for the list
};

// Fills RULE, or returns false with the reason in WRONG.
[[nodiscard]] bool fault_parse(const std::string& what, const std::string& how, int count,
                               fault_rule& rule, std::string& wrong);

// The same from the words after `gwbox fail`: WHAT HOW [COUNT].
[[nodiscard]] bool fault_parse_words(const std::vector<std::string>& words, fault_rule& rule,
                                     std::string& wrong);

// Reads the text of a COUNT; false if it is not a valid one.
[[nodiscard]] bool fault_parse_count(const std::string& text, int& count);

// All names that WHAT may be or start with; all errno names and, ending in "=", other forms of HOW.
std::vector<std::string> fault_names();
std::vector<std::string> fault_hows();

// Adds the rule. Only the most recent of the used-up rules are kept.
void fault_add(std::vector<fault_rule>& rules, const fault_rule& rule);

// Uses the first rule that matches once and copies it, as it was before, to TAKEN; false if none
// matches. SUB is ignored without HAS_SUB.
[[nodiscard]] bool fault_take(std::vector<fault_rule>& rules, uint32_t request, bool has_sub,
                              uint16_t sub, const std::string& interface, fault_rule& taken);
