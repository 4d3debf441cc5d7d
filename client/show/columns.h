// Aligned columns of text.
#pragma once

#include <span>
#include <string>
#include <vector>

struct text_column {
  const char* heading;
  bool right;             // numbers; else left, and cut where the terminal ends
  const char* unit = "";  // of its numbers
  int rank = 0;           // where columns have no room, the highest goes first; 0: never
};

// Lines of one text per column, each already safe on a terminal. `width`:
// columns of the terminal, 0 for none. Characters beyond ASCII are \xNN where the
// machine has no locale C.UTF-8. Units stand below their headings on a terminal,
// which is narrow, and after them elsewhere, where a table has one line of headings.
std::string columns_text(std::span<const text_column> columns,
                         const std::vector<std::vector<std::string>>& lines, bool headings,
                         size_t width);
