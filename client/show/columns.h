// Aligned columns of text.
#pragma once

#include <span>
#include <string>
#include <vector>

struct text_column {
  const char* heading;
  bool right;  // right-aligned, for numbers; otherwise left, and cut at the end of the terminal
  const char* unit = "";  // of its numbers
  int rank = 0;           // the highest is dropped first when space is short; 0: never
};

// Formats lines of one text per column, each already safe on a terminal. `width`: columns of
// the terminal, 0 for none. Without the locale C.UTF-8, characters beyond ASCII become \xNN.
// Units are below their headings on a terminal, to save width. Elsewhere they follow the
// heading, so that a table has one heading line.
std::string columns_text(std::span<const text_column> columns,
                         const std::vector<std::vector<std::string>>& lines, bool headings,
                         size_t width);
