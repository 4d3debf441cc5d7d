// Tables for a terminal of 80 columns.
#pragma once

#include <span>
#include <string>
#include <vector>

constexpr size_t kColumnsWidth = 80;

struct column {
  const char* name;
  double width;  // a hint: a number of columns, or below 1 a share of the screen
  int flags;     // of libsmartcols
};

// A row has as many cells as there are columns; cells must hold no control bytes. Ends in a
// newline.
std::string columns_table(std::span<const column> columns,
                          const std::vector<std::vector<std::string>>& rows);

// Escaped for a terminal as wificonf does it, and at most WIDTH columns wide. Text is cut between
// characters and never inside an escape.
std::string columns_fitted(const std::string& bytes, size_t width);
