// The box's side of `gwbox fail`.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

// The answer to "fail WORD...", for serve.h.
std::string fail_act(trap_state& trap, const std::vector<std::string>& words);
