#include "values/payload.h"

#include <algorithm>

// Reads up to `count` bytes, low byte first, stopping at the end of the record.
static uint64_t little_endian(std::string_view record, size_t at, size_t count) {
  uint64_t value = 0;
  for (size_t i = count; i-- > 0;) {
    if (at + i < record.size()) value = (value << 8) | static_cast<unsigned char>(record[at + i]);
  }
  return value;
}

uint32_t payload_width(const payload_field& field) {
  switch (field.type) {
    case field_type::kU8:
    case field_type::kI8:
    case field_type::kBssPosition:
      return 1;
    case field_type::kU16:
    case field_type::kRate:
      return 2;
    case field_type::kU32:
    case field_type::kI32:
    case field_type::kRate1024:
    case field_type::kCounter32:
    case field_type::kFlag:
    case field_type::kTime:
      return 4;
    case field_type::kU64:
    case field_type::kI64:
    case field_type::kCounter64:
    case field_type::kCounterI64:
      return 8;
    case field_type::kMac:
      return 6;
    case field_type::kText:
    case field_type::kBytes:
      return field.width;
  }
  return 0;
}

bool payload_is_signed(field_type type) {
  return type == field_type::kI8 || type == field_type::kI32 || type == field_type::kI64 ||
         type == field_type::kCounterI64 || type == field_type::kRate1024;
}

bool payload_is_counter(field_type type) {
  return type == field_type::kCounter32 || type == field_type::kCounter64 ||
         type == field_type::kCounterI64;
}

bool payload_growth(const payload_field& field, std::string_view earlier, std::string_view record,
                    uint64_t* growth) {
  if (!payload_is_known(field, earlier) || !payload_is_known(field, record)) return false;
  const uint64_t then = payload_unsigned(field, earlier);
  const uint64_t now = payload_unsigned(field, record);
  const bool narrow = then <= UINT32_MAX && now <= UINT32_MAX;
  *growth = narrow ? static_cast<uint32_t>(now - then) : now - then;
  return *growth <= (narrow ? UINT32_MAX / 2 : UINT64_MAX / 2);
}

uint32_t payload_row_count(const payload_rows& rows, std::string_view record) {
  if (rows.count_at == kAllRows) return rows.capacity;
  return static_cast<uint32_t>(
      std::min<uint64_t>(little_endian(record, rows.count_at, 4), rows.capacity));
}

std::string_view payload_row(const payload_rows& rows, std::string_view record, uint32_t index) {
  return record.substr(rows.first + index * rows.stride, rows.stride);
}

uint64_t payload_unsigned(const payload_field& field, std::string_view record) {
  return little_endian(record, field.offset, payload_width(field));
}

int64_t payload_signed(const payload_field& field, std::string_view record) {
  const uint32_t width = payload_width(field);
  if (width == 0 || width > 8) return 0;
  const unsigned unused = 64 - 8 * width;
  return static_cast<int64_t>(payload_unsigned(field, record) << unused) >> unused;
}

std::span<const int> payload_unknown(not_known unknown) {
  static constexpr int kMinusOne[] = {-1}, kZero[] = {0}, kNoSignal[] = {0, -127};
  switch (unknown) {
    case not_known::kNever:
      return {};
    case not_known::kMinusOne:
      return kMinusOne;
    case not_known::kZero:
      return kZero;
    case not_known::kNoSignal:
      return kNoSignal;
  }
  return {};
}

bool payload_is_known(not_known unknown, int64_t value) {
  const std::span<const int> none = payload_unknown(unknown);
  return std::find(none.begin(), none.end(), value) == none.end();
}

bool payload_is_known(const payload_field& field, std::string_view record) {
  if (field.type == field_type::kTime) return payload_unsigned(field, record) != 0;
  return payload_is_known(field.unknown, payload_signed(field, record));
}

std::string payload_meaning(const char* meaning, not_known unknown) {
  std::string out = meaning;
  const char* joint = out.empty() ? "" : "; ";
  for (const int value : payload_unknown(unknown)) {
    out += joint + std::to_string(value);
    joint = " or ";
  }
  return unknown == not_known::kNever ? out : out + ": not known";
}

std::string_view payload_bytes(const payload_field& field, std::string_view record) {
  if (field.offset >= record.size()) return {};
  const std::string_view bytes = record.substr(field.offset, payload_width(field));
  return field.type == field_type::kText ? bytes.substr(0, bytes.find('\0')) : bytes;
}
