#include "base/columns.h"

#include <libsmartcols.h>
#include <wchar.h>
#include <cstdlib>

#include <algorithm>

#include "client/base/text.h"

std::string columns_table(std::span<const column> columns,
                          const std::vector<std::vector<std::string>>& rows) {
  libscols_table* table = scols_new_table();
  scols_table_enable_noencoding(table, 1);
  scols_table_set_termforce(table, SCOLS_TERMFORCE_ALWAYS);
  scols_table_set_termwidth(table, kColumnsWidth);
  for (const column& c : columns)
    scols_table_new_column(table, c.name, c.width, c.flags);
  for (const std::vector<std::string>& row : rows) {
    libscols_line* line = scols_table_new_line(table, nullptr);
    for (size_t i = 0; i < row.size(); ++i)
      scols_line_set_data(line, i, row[i].c_str());
  }
  char* text = nullptr;
  scols_print_table_to_string(table, &text);
  std::string result = text ? std::string(text) + "\n" : "";
  free(text);
  scols_unref_table(table);
  return result;
}

std::string columns_fitted(const std::string& bytes, size_t width) {
  std::string text, kept;
  size_t used = 0;
  for (size_t at = 0; at < bytes.size();) {
    uint32_t c = 0;
    size_t length = std::max<size_t>(text_decode(bytes, at, &c), 1);
    std::string shown = text_escape(std::string_view(bytes).substr(at, length));
    int columns = shown.size() == length ? wcwidth(static_cast<wchar_t>(c)) : -1;
    used += columns >= 0 ? static_cast<size_t>(columns) : shown.size();
    if (used > width) return kept + "~";
    text += shown;
    if (used < width) kept = text;
    at += length;
  }
  return text;
}
