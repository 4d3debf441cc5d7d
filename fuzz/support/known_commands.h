#pragma once

#include <string_view>

// Whether a command line is one of the daemon's. Each text in it that comes from outside
// must be one word that a shell takes literally.
bool is_known_command(std::string_view command);
