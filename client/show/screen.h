// A terminal's screen, redrawn as a whole.
#pragma once

#include <cstdio>
#include <string>

// Whether `out` is a terminal that can be redrawn. One of type "dumb" cannot be.
bool screen_is(FILE* out);

// The number of lines of the terminal `out`; 24 if unknown.
size_t screen_height(FILE* out);

// The first `count` lines of `text`, each cut to `width` columns. Every line of `text` ends in
// a newline. If there are more, the last line says how many are left out.
std::string screen_lines(const std::string& text, size_t count, size_t width);
