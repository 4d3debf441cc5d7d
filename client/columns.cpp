#include "columns.h"

#include <libsmartcols.h>

#include <cstdlib>

static std::string printed(libscols_table* table) {
  char* text = nullptr;
  scols_print_table_to_string(table, &text);
  std::string out = text == nullptr ? "" : text;
  free(text);
  if (!out.empty() && out.back() != '\n') out += "\n";
  return out;
}

static void fill(libscols_table* table, std::span<const text_column> columns,
                 const std::vector<std::vector<std::string>>& lines) {
  for (const text_column& column : columns)
    scols_table_new_column(table, column.heading, 0,
                           column.right ? SCOLS_FL_RIGHT : SCOLS_FL_TRUNC);
  for (const std::vector<std::string>& texts : lines) {
    libscols_line* line = scols_table_new_line(table, nullptr);
    for (size_t i = 0; i < texts.size(); i++)
      scols_line_set_data(line, i, texts[i].c_str());
  }
}

std::string columns_text(std::span<const text_column> columns,
                         const std::vector<std::vector<std::string>>& lines, bool headings,
                         size_t width) {
  libscols_table* table = scols_new_table();
  if (table == nullptr) return "";
  scols_table_enable_noencoding(table, 1);
  scols_table_enable_noheadings(table, headings ? 0 : 1);
  scols_table_set_termforce(table, width != 0 ? SCOLS_TERMFORCE_ALWAYS : SCOLS_TERMFORCE_NEVER);
  if (width != 0) scols_table_set_termwidth(table, width);
  fill(table, columns, lines);
  std::string out = printed(table);
  scols_unref_table(table);
  return out;
}
