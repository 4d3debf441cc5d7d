// A terminal's screen, redrawn whole.
#pragma once

#include <cstdio>
#include <string>

// Lines of the terminal that `out` is; 24 when it does not tell.
size_t screen_height(FILE* out);

// The first `count` lines.
std::string screen_lines(const std::string& text, size_t count);
