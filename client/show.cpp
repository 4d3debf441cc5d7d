#include "show.h"

#include <libsmartcols.h>

#include <cinttypes>
#include <cstdlib>
#include <ctime>

#include "rate_word.h"
#include "text.h"

namespace {

std::string show_mac(std::string_view mac) {
  std::string text;
  for (const char byte : mac)
    text += text_format("%s%02x", text.empty() ? "" : ":", static_cast<unsigned char>(byte));
  return text;
}

std::string show_time(uint64_t seconds) {
  if (seconds == 0) return "-";
  const auto time = static_cast<time_t>(seconds);
  tm date{};
  gmtime_r(&time, &date);
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%SZ", &date);
  return text;
}

// An aligned table; released with scols_unref_table.
libscols_table* new_table(size_t width) {
  libscols_table* table = scols_new_table();
  scols_table_enable_noencoding(table, 1);  // texts are safe already
  if (width != 0) {
    scols_table_set_termwidth(table, width);
    scols_table_set_termforce(table, SCOLS_TERMFORCE_ALWAYS);
  } else {
    scols_table_set_termforce(table, SCOLS_TERMFORCE_NEVER);
  }
  return table;
}

std::string printed(libscols_table* table) {
  char* text = nullptr;
  scols_print_table_to_string(table, &text);
  const std::string out = text == nullptr ? "" : text;
  free(text);
  return out.empty() || out.back() == '\n' ? out : out + "\n";
}

bool is_text(field_type type) {
  return type == field_type::kText || type == field_type::kMac || type == field_type::kTime;
}

std::string show_fields(std::span<const payload_field> fields, std::string_view record,
                        size_t width) {
  libscols_table* table = new_table(width);
  scols_table_enable_noheadings(table, 1);
  for (const char* column : {"name", "value"})
    scols_table_new_column(table, column, 0, 0);
  for (const payload_field& field : fields) {
    libscols_line* line = scols_table_new_line(table, nullptr);
    const std::string unit = *field.unit == '\0' ? "" : std::string(" ") + field.unit;
    scols_line_set_data(line, 0, field.name);
    scols_line_set_data(line, 1, (show_value(field, record) + unit).c_str());
  }
  const std::string out = printed(table);
  scols_unref_table(table);
  return out;
}

void add_columns(libscols_table* table, std::span<const payload_field> fields) {
  for (const payload_field& field : fields) {
    if (*field.heading == '\0') continue;
    const int flags = is_text(field.type) ? SCOLS_FL_TRUNC : SCOLS_FL_RIGHT;
    scols_table_new_column(table, field.heading, 0, flags);
  }
}

void add_line(libscols_table* table, std::span<const payload_field> fields, std::string_view row) {
  libscols_line* line = scols_table_new_line(table, nullptr);
  size_t column = 0;
  for (const payload_field& field : fields) {
    if (*field.heading == '\0') continue;
    scols_line_set_data(line, column++, show_value(field, row).c_str());
  }
}

std::string show_rows(const payload_rows& rows, std::string_view record, size_t width) {
  const uint32_t count = payload_row_count(rows, record);
  if (count == 0) return text_format("no %s\n", rows.name);
  libscols_table* table = new_table(width);
  add_columns(table, rows.fields);
  for (uint32_t i = 0; i < count; i++)
    add_line(table, rows.fields, record.substr(rows.first + i * rows.stride, rows.stride));
  const std::string out = printed(table);
  scols_unref_table(table);
  return out;
}

}  // namespace

std::string show_value(const payload_field& field, std::string_view record) {
  switch (field.type) {
    case field_type::kText:
      return text_escape(payload_bytes(field, record));
    case field_type::kMac:
      return show_mac(payload_bytes(field, record));
    case field_type::kBytes:
      return text_hex(payload_bytes(field, record));
    case field_type::kTime:
      return show_time(payload_unsigned(field, record));
    case field_type::kRate:
      return rate_word_megabits(
          rate_word_decode(static_cast<uint16_t>(payload_unsigned(field, record))));
    case field_type::kFlag:
      return payload_unsigned(field, record) != 0 ? "yes" : "no";
    default:
      return payload_is_signed(field.type)
                 ? text_format("%" PRId64, payload_signed(field, record))
                 : text_format("%" PRIu64, payload_unsigned(field, record));
  }
}

std::string show_record(const payload_layout& layout, std::string_view record, size_t width) {
  std::string out;
  if (!layout.fields.empty()) out = show_fields(layout.fields, record, width);
  if (layout.rows != nullptr) out += show_rows(*layout.rows, record, width);
  return out;
}
