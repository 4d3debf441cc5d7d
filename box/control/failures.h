// The box's side of `gwbox fail`.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

// Carries out the message "fail WORD..." and returns the answer, see connection.h.
std::string fail_act(trap_state& trap, const std::vector<std::string>& words);
