#pragma once

#include <string_view>

// Whether a command line is one that the daemon has, every text of somebody else
// in it being one word that a shell takes as it is.
bool is_known_command(std::string_view command);
