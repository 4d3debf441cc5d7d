// Faults injected by `gwbox fail`: rules that make matching requests fail or wait.
//
// WHAT is request[:sub][@interface]: "0x8BE1", "0x8BE1:0x069B", "0x8BE2@ra8".
// HOW is the name of an errno, "EAGAIN", or "delay=MILLISECONDS".
#pragma once

#include <stdint.h>

#include <string>
#include <vector>

struct fault_rule {
  uint32_t request;
  bool has_sub;
  uint16_t sub;
  std::string interface;  // empty: any
  int error;              // positive errno; 0: only delayed
  int delay_ms;
  int left;  // how many requests it still applies to
};

// Fills RULE. On a text that it does not know it returns false and says why in WRONG.
[[nodiscard]] bool fault_parse(const std::string& what, const std::string& how, int count,
                               fault_rule& rule, std::string& wrong);

// Takes one use of the first rule that matches and copies that rule to TAKEN; false when none
// matches. SUB counts only with HAS_SUB.
[[nodiscard]] bool fault_take(std::vector<fault_rule>& rules, uint32_t request, bool has_sub,
                              uint16_t sub, const std::string& interface, fault_rule& taken);
