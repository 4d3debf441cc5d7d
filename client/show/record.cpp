#include "show/record.h"

#include <cinttypes>

#include "base/moment.h"
#include "base/text.h"
#include "show/columns.h"
#include "values/rate_word.h"

static constexpr char kNotKnown[] = "-";

static std::string show_mac(std::string_view mac) {
  std::string text;
  for (const char byte : mac)
    text += text_format("%s%02x", text.empty() ? "" : ":", static_cast<unsigned char>(byte));
  return text;
}

// Bytes in hexadecimal. Long values are cut; the JSON has them whole.
static std::string show_bytes(std::string_view bytes) {
  constexpr size_t kMost = 16;
  if (bytes.size() <= kMost) return text_hex(bytes);
  return text_format("%s... (%zu bytes)", text_hex(bytes.substr(0, kMost)).c_str(), bytes.size());
}

static bool is_text(field_type type) {
  return type == field_type::kText || type == field_type::kMac || type == field_type::kTime;
}

// A counter's growth per second. "" for other fields, without an earlier record, or if the
// counter went back.
static std::string show_rate(const payload_field& field, std::string_view record,
                             const earlier_record* earlier) {
  if (earlier == nullptr || earlier->record.empty() || !payload_is_counter(field.type)) return "";
  uint64_t growth = 0;
  if (!payload_growth(field, earlier->record, record, &growth)) return "";
  const double rate = static_cast<double>(growth) / earlier->seconds;
  return text_format(rate < 100 ? "%.1f" : "%.0f", rate);
}

// The same row earlier; an empty record if there was none.
static earlier_record earlier_row(const payload_rows& rows, std::string_view row,
                                  const earlier_record& earlier) {
  for (const payload_field& field : rows.fields) {
    if (std::string_view(field.name) != "mac_address") continue;
    for (uint32_t i = 0; i < payload_row_count(rows, earlier.record); ++i) {
      const std::string_view then = payload_row(rows, earlier.record, i);
      if (payload_bytes(field, then) == payload_bytes(field, row)) return {then, earlier.seconds};
    }
  }
  return {{}, earlier.seconds};
}

static std::string show_fields(std::span<const payload_field> fields, std::string_view record,
                               size_t width, const earlier_record* earlier) {
  static constexpr text_column kColumns[] = {{"", false}, {"", false}, {"", true}};
  std::vector<std::vector<std::string>> lines;
  for (const payload_field& field : fields) {
    const std::string unit = *field.unit == '\0' ? "" : std::string(" ") + field.unit;
    const std::string rate = show_rate(field, record, earlier);
    const std::string value = show_value(field, record);
    lines.push_back({field.name, value == kNotKnown ? value : value + unit});
    if (!rate.empty()) lines.back().push_back(rate + unit + "/s");
  }
  return columns_text(std::span(kColumns).first(earlier == nullptr ? 2 : 3), lines, false, width);
}

static bool has_rate(const payload_field& field, const earlier_record* earlier) {
  return earlier != nullptr && payload_is_counter(field.type);
}

// In tables all rates have the same unit.
static const char* unit_in_table(const payload_field& field) {
  return field.type == field_type::kRate1024 ? "Mbit/s" : field.unit;
}

static std::vector<std::string> row_texts(const payload_rows& rows, std::string_view row,
                                          const show_settings& settings) {
  const earlier_record* earlier = settings.earlier;
  earlier_record then = {};
  if (earlier != nullptr) then = earlier_row(rows, row, *earlier);
  std::vector<std::string> texts;
  for (const payload_field& field : rows.fields) {
    if (*field.heading == '\0') continue;
    texts.push_back(show_cell(field, row, settings.first_bss));
    if (has_rate(field, earlier)) texts.push_back(show_rate(field, row, &then));
  }
  return texts;
}

static std::string show_rows(const payload_rows& rows, std::string_view record,
                             const show_settings& settings) {
  const uint32_t count = payload_row_count(rows, record);
  if (count == 0) return text_format("no %s\n", rows.name);
  std::vector<text_column> columns;
  for (const payload_field& field : rows.fields) {
    if (*field.heading == '\0') continue;
    columns.push_back({field.heading, !is_text(field.type), unit_in_table(field)});
    if (has_rate(field, settings.earlier))
      columns.push_back({*field.unit == 'B' ? "B/s" : "/s", true});
  }
  std::vector<std::vector<std::string>> lines;
  for (uint32_t i = 0; i < count; ++i)
    lines.push_back(row_texts(rows, payload_row(rows, record, i), settings));
  return columns_text(columns, lines, true, settings.width);
}

// A value as one word: quoted if it has blanks, with quotes inside escaped.
static std::string quoted(const std::string& value) {
  if (value.find_first_of(" \"") == std::string::npos) return value;
  std::string out = "\"";
  for (const char c : value)
    out += c == '"' ? std::string("\\x22") : std::string(1, c);
  return out + "\"";
}

static std::string show_line(std::span<const payload_field> fields, std::string_view record,
                             int first_bss, const earlier_record* earlier) {
  std::string line;
  for (const payload_field& field : fields) {
    if (field.type == field_type::kBssPosition) {
      line += " bss=" + show_cell(field, record, first_bss);
      continue;
    }
    line.append(" ").append(field.name).append("=").append(quoted(show_value(field, record)));
    const std::string rate = show_rate(field, record, earlier);
    if (!rate.empty()) line.append(" ").append(field.name).append("/s=").append(rate);
  }
  return line + "\n";
}

std::string show_number(const procedure_row& procedure, int32_t value) {
  const bool known = payload_is_known(payload_value(procedure).unknown, value);
  return known ? std::to_string(value) : kNotKnown;
}

std::string show_value(const payload_field& field, std::string_view record) {
  if (!payload_is_known(field, record)) return kNotKnown;
  switch (field.type) {
    case field_type::kText:
      return text_escape(payload_bytes(field, record));
    case field_type::kMac:
      return show_mac(payload_bytes(field, record));
    case field_type::kBytes:
      return show_bytes(payload_bytes(field, record));
    case field_type::kTime:
      return moment_text(payload_unsigned(field, record));
    case field_type::kRate:
      return rate_word_megabits(
          rate_word_decode(static_cast<uint16_t>(payload_unsigned(field, record))));
    case field_type::kFlag:
      return payload_unsigned(field, record) != 0 ? "yes" : "no";
    case field_type::kU8:
    case field_type::kI8:
    case field_type::kU16:
    case field_type::kU32:
    case field_type::kI32:
    case field_type::kU64:
    case field_type::kI64:
    case field_type::kCounter32:
    case field_type::kCounter64:
    case field_type::kCounterI64:
    case field_type::kRate1024:
    case field_type::kBssPosition:
      break;
  }
  return payload_is_signed(field.type) ? text_format("%" PRId64, payload_signed(field, record))
                                       : text_format("%" PRIu64, payload_unsigned(field, record));
}

std::string show_cell(const payload_field& field, std::string_view record, int first_bss) {
  if (field.type == field_type::kBssPosition)
    return std::to_string(payload_unsigned(field, record) + static_cast<unsigned>(first_bss));
  if (field.type != field_type::kRate1024) return show_value(field, record);
  return text_format("%.0f", static_cast<double>(payload_signed(field, record)) / 1024);
}

std::string show_record(const payload_layout& layout, std::string_view record,
                        const show_settings& settings) {
  std::string rows, fields;
  if (layout.rows != nullptr) rows = show_rows(*layout.rows, record, settings);
  if (!layout.fields.empty())
    fields = show_fields(layout.fields, record, settings.width, settings.earlier);
  return rows + fields;
}

std::string show_lines(const payload_layout& layout, std::string_view record,
                       const std::string& start, const show_settings& settings) {
  const earlier_record* earlier = settings.earlier;
  std::string out;
  if (!layout.fields.empty()) out = start + show_line(layout.fields, record, 1, earlier);
  if (layout.rows == nullptr) return out;
  if (payload_row_count(*layout.rows, record) == 0)
    return out + start + " no " + layout.rows->name + "\n";
  for (uint32_t i = 0; i < payload_row_count(*layout.rows, record); ++i) {
    const std::string_view row = payload_row(*layout.rows, record, i);
    const earlier_record then =
        earlier == nullptr ? earlier_record{{}, 1} : earlier_row(*layout.rows, row, *earlier);
    out += start + show_line(layout.rows->fields, row, settings.first_bss, &then);
  }
  return out;
}
