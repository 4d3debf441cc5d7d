// A terminal's screen, redrawn whole.
#pragma once

#include <cstdio>
#include <string>

// Whether `out` is a terminal that can be redrawn: one by the name of "dumb" cannot.
bool screen_is(FILE* out);

// Lines of the terminal that `out` is; 24 when it does not tell.
size_t screen_height(FILE* out);

// The first `count` lines of `text`, whose lines all end, each at most `width` columns; the last of
// them says how many are left out where there are more.
std::string screen_lines(const std::string& text, size_t count, size_t width);
