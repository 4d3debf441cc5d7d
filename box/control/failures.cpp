#include "control/failures.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "control/connection.h"
#include "gateway/around.h"

using json = nlohmann::ordered_json;

static long waiting_for(const trap_state& trap, const fault_rule& rule) {
  return std::count_if(trap.delayed.begin(), trap.delayed.end(), [&](const trap_delayed& held) {
    return held.rule.what == rule.what && held.rule.how == rule.how;
  });
}

static std::string list_json(const trap_state& trap) {
  json list = json::array();
  for (const fault_rule& rule : trap.faults) {
    list.push_back({{"what", rule.what},
                    {"how", rule.how},
                    {"hits", rule.hits},
                    {"left", rule.left},
                    {"waiting", waiting_for(trap, rule)}});
  }
  return json{{"failures", list}}.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

std::string fail_act(trap_state& trap, const std::vector<std::string>& words) {
  std::string wrong;
  if (words.size() == 2 && words[1] == kFaultList) {
    return std::string("ok") + kControlBreak + list_json(trap);
  }
  return around_fail(trap, {words.begin() + 1, words.end()}, wrong) ? "ok" : wrong;
}
