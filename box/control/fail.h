// `gwbox fail`: both sides of it.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

// Server side: the answer to "fail WORD...", for control.h.
std::string fail_act(trap_state& trap, const std::vector<std::string>& words);

// WORDS after `gwbox fail`: WHAT HOW [COUNT], "clear" or "list". BOX as for reach_root; AS_JSON:
// how a list is printed. Returns the exit status.
int fail_run(const std::string& box, const std::vector<std::string>& words, bool as_json);
