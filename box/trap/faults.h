// Faults injected by `gwbox fail`: rules that make matching requests and system calls fail, answer
// short or wait.
//
// WHAT is request[:sub][@interface]: "0x8BE1", "0x8BE1:0x069B", "0x8BE2@ra8"; or a name, with or
// without @interface: "set", "survey@ra8", "vlan", "init_module".
// HOW is the name of an errno, "EAGAIN", "delay=MILLISECONDS",
// "short=BYTES", or "count=NUMBER".
#pragma once

#include <cstdint>

#include <string>
#include <vector>

// Trapped calls other than ioctl have request numbers of their own.
constexpr uint32_t kFaultInitModule = 0x10000001;
constexpr uint32_t kFaultFinitModule = 0x10000002;
constexpr uint32_t kFaultDeleteModule = 0x10000003;
constexpr uint32_t kFaultVlan = 0x8983;  // the VLAN request

constexpr const char* kFaultClear = "clear";  // instead of WHAT: ends all of them
constexpr const char* kFaultList = "list";    // instead of WHAT: says which there are

struct fault_rule {
  std::string what, how;  // as they were given
  uint32_t request;
  bool has_sub;
  uint16_t sub;
  std::string interface;  // empty: any
  int error;              // positive errno; 0: none
  int delay_ms;
  bool is_short;  // the answer is cut to short_bytes, as is the length that the caller is told
  int short_bytes;
  bool has_count;  // the answer's first 32 bits, the count of a table, become count
  uint32_t count;
  int hits;  // how many requests it has applied to
  int left;  // how many it still applies to; 0: used up, kept to be listed
};

// Fills RULE. On a text that it does not know it returns false and says why in WRONG.
[[nodiscard]] bool fault_parse(const std::string& what, const std::string& how, int count,
                               fault_rule& rule, std::string& wrong);

// The same from the words after `gwbox fail`: WHAT HOW [COUNT].
[[nodiscard]] bool fault_parse_words(const std::vector<std::string>& words, fault_rule& rule,
                                     std::string& wrong);

// COUNT as it is given; false when it is none.
[[nodiscard]] bool fault_parse_count(const std::string& text, int& count);

// All names that WHAT may be or begin with, and that HOW may be or, ending in "=", begin with.
std::vector<std::string> fault_names();
std::vector<std::string> fault_hows();

// Puts the rule in force. Only the most recent of the used-up rules are kept.
void fault_add(std::vector<fault_rule>& rules, const fault_rule& rule);

// Takes one use of the first rule that matches and copies that rule to TAKEN; false when none
// matches. SUB counts only with HAS_SUB.
[[nodiscard]] bool fault_take(std::vector<fault_rule>& rules, uint32_t request, bool has_sub,
                              uint16_t sub, const std::string& interface, fault_rule& taken);
