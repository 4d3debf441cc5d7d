#include "show/columns.h"

#include <libsmartcols.h>
#include <locale.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/text.h"

// Without a UTF-8 locale only the width of ASCII is known, so the rest becomes \xNN.
static std::string ascii_of(const std::string& text) {
  std::string out;
  for (const char byte : text)
    out += (byte & 0x80) == 0 ? std::string(1, byte) : "\\x" + text_hex({&byte, 1});
  return out;
}

static std::string printed(libscols_table* table) {
  char* text = nullptr;
  scols_print_table_to_string(table, &text);
  std::string out = text == nullptr ? "" : text;
  free(text);
  if (!out.empty() && out.back() != '\n') out += "\n";
  return out;
}

static bool has_units(std::span<const text_column> columns) {
  return std::any_of(columns.begin(), columns.end(),
                     [](const text_column& column) { return *column.unit != '\0'; });
}

static std::string heading_of(const text_column& column, bool below) {
  const bool alone = below || *column.unit == '\0';
  return alone ? column.heading : std::string(column.heading) + " " + column.unit;
}

static void add_units(libscols_table* table, std::span<const text_column> columns) {
  libscols_line* line = scols_table_new_line(table, nullptr);
  for (size_t i = 0; i < columns.size(); ++i)
    scols_line_set_data(line, i, columns[i].unit);
}

static void fill(libscols_table* table, std::span<const text_column> columns,
                 const std::vector<std::vector<std::string>>& lines, bool below, bool utf8) {
  for (const text_column& column : columns)
    scols_table_new_column(table, heading_of(column, below).c_str(), 0,
                           column.right ? SCOLS_FL_RIGHT : SCOLS_FL_TRUNC);
  if (below) add_units(table, columns);
  for (const std::vector<std::string>& texts : lines) {
    libscols_line* line = scols_table_new_line(table, nullptr);
    for (size_t i = 0; i < texts.size(); ++i)
      scols_line_set_data(line, i, utf8 ? texts[i].c_str() : ascii_of(texts[i]).c_str());
  }
}

static std::string table_text(libscols_table* table, bool headings, size_t width) {
  scols_table_enable_noencoding(table, 1);
  scols_table_enable_noheadings(table, headings ? 0 : 1);
  scols_table_set_termforce(table, width != 0 ? SCOLS_TERMFORCE_ALWAYS : SCOLS_TERMFORCE_NEVER);
  if (width != 0) scols_table_set_termwidth(table, width);
  return printed(table);
}

static size_t characters_in(std::string_view text) {
  size_t count = 0;
  uint32_t code_point = 0;
  for (size_t at = 0; at < text.size(); ++count)
    at += std::max<size_t>(text_decode(text, at, &code_point), 1);
  return count;
}

using text_lines = std::vector<std::vector<std::string>>;

// The width of the table with its units below the headings.
static size_t width_of(const std::vector<text_column>& columns, const text_lines& lines) {
  size_t all = 0;
  for (size_t i = 0; i < columns.size(); ++i) {
    size_t width = std::max(strlen(columns[i].heading), strlen(columns[i].unit));
    for (const auto& texts : lines)
      width = std::max(width, i < texts.size() ? characters_in(texts[i]) : 0);
    all += width + (i == 0 ? 0 : 1);
  }
  return all;
}

// Removes columns until the rest fit or must stay.
static void leave_out(std::vector<text_column>& columns, text_lines& lines, size_t width) {
  while (width_of(columns, lines) > width) {
    const auto last = std::max_element(
        columns.begin(), columns.end(),
        [](const text_column& a, const text_column& b) { return a.rank < b.rank; });
    if (last->rank == 0) return;
    const auto at = last - columns.begin();
    columns.erase(last);
    for (auto& texts : lines)
      texts.erase(texts.begin() + at);
  }
}

std::string columns_text(std::span<const text_column> all_columns,
                         const std::vector<std::vector<std::string>>& all_lines, bool headings,
                         size_t width) {
  std::vector<text_column> columns(all_columns.begin(), all_columns.end());
  text_lines lines = all_lines;
  if (width != 0) leave_out(columns, lines, width);
  libscols_table* table = scols_new_table();
  if (table == nullptr) return "";
  // The library measures characters by the thread's locale. In a locale without UTF-8 it loops
  // forever on UTF-8 text.
  const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const locale_t before = uselocale(utf8);
  fill(table, columns, lines, headings && width != 0 && has_units(all_columns), utf8 != nullptr);
  std::string out = table_text(table, headings, width);
  uselocale(before);
  if (utf8 != nullptr) freelocale(utf8);
  scols_unref_table(table);
  return out;
}
