// The named fields of binary results. Each procedure whose result is a record has one layout;
// text, JSON, schema, reference and packet dissector derive from it.
//
// Records are raw memory of the daemon, little-endian. Sent as return_words they are the same
// bytes, low word first.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "wire/table.h"

enum class field_type {
  kU8,
  kI8,
  kU16,
  kU32,
  kI32,
  kU64,
  kI64,
  kCounter32,  // wraps to 0 when full
  kCounter64,
  kCounterI64,   // signed
  kFlag,         // 32 bits, 0 or not
  kText,         // `width` bytes, ends at the first NUL
  kMac,          // six bytes
  kRate,         // 16-bit transmit-rate word of the driver, see rate_word.h
  kRate1024,     // 32 bits, signed, kbit/s; the daemon counts 1024 to the Mbit/s
  kTime,         // 32 bits, seconds since the epoch, UTC
  kBssPosition,  // 8 bits, position of a BSS within its radio, from 0
  kBytes,        // `width` bytes of unknown meaning
};

// How confidential a value is. A redacted dump keeps only free values.
enum class content {
  kUnsaid,   // not classified: left out
  kFree,     // a number, or words that the daemon itself chose
  kName,     // any text chosen by a person, a station or another program
  kNumber,   // such a text that is usually a number, a time or a version; free if it is
  kAddress,  // MAC or IP address
  kSecret,
};

// The values that mean "not known": "-" in text, null in JSON.
enum class not_known {
  kNever,
  kMinusOne,
  kZero,
  kNoSignal,  // 0 and -127
};

struct payload_field {
  const char* name;  // in JSON
  field_type type;
  uint16_t offset;      // in the record or the row
  uint16_t width;       // bytes, for kText and kBytes; otherwise 0
  const char* unit;     // "dBm", "s", ...; "" if none
  const char* heading;  // of the column in text output; "": only in JSON
  const char* meaning;  // "" if the name says it all
  content holds = content::kUnsaid;
  not_known unknown = not_known::kNever;
};

// Rows of one shape within a record.
struct payload_rows {
  const char* name;
  // Offset of the number of used rows, a u32; kAllRows: all are used. A number above `capacity`
  // counts as `capacity`.
  uint16_t count_at;
  uint16_t first;   // offset of the first row
  uint16_t stride;  // bytes from one row to the next
  uint16_t capacity;
  std::span<const payload_field> fields;
};
inline constexpr uint16_t kAllRows = 0xffff;

struct payload_layout {
  const char* procedure;  // as in the table
  std::span<const payload_field> fields;
  const payload_rows* rows;  // nullptr: none
};

// The layout of a procedure with a WORDS or IMAGE payload; otherwise nullptr.
const payload_layout* payload_find(const procedure_row& procedure);

// The value of a procedure with an INT or TEXT payload. Unit and meaning are "" if there is
// none, or if the procedure's name says it.
struct value_meaning {
  const char* procedure;
  const char* unit;
  const char* meaning;
  content holds = content::kUnsaid;
  not_known unknown = not_known::kNever;
};
const value_meaning& payload_value(const procedure_row& procedure);

std::span<const value_meaning> payload_values();

// What return codes mean: "negative: the call failed", except for setters that return the
// profile update's code.
const char* payload_codes(const procedure_row& procedure);
bool payload_failed(const procedure_row& procedure, int32_t code);

uint32_t payload_width(const payload_field& field);

// Used rows in `record`, which must have the size given in the table.
uint32_t payload_row_count(const payload_rows& rows, std::string_view record);

std::string_view payload_row(const payload_rows& rows, std::string_view record, uint32_t index);

// Read a number from a record, or a text without its padding.
uint64_t payload_unsigned(const payload_field& field, std::string_view record);
int64_t payload_signed(const payload_field& field, std::string_view record);
std::string_view payload_bytes(const payload_field& field, std::string_view record);
// The values that mean "not known", and whether a value is known. A time of 0 is not known
// either.
std::span<const int> payload_unknown(not_known unknown);
bool payload_is_known(not_known unknown, int64_t value);
bool payload_is_known(const payload_field& field, std::string_view record);

// "MEANING; -1: not known", or whichever of the two there is.
std::string payload_meaning(const char* meaning, not_known unknown);

bool payload_is_signed(field_type type);
bool payload_is_counter(field_type type);

// A counter's growth since an earlier record. False if it is or was unknown, or was reset, as
// after a restart of the radio. The shorter distance decides between a wrap and a reset. A
// 64-bit field may hold a 32-bit counter of the driver.
[[nodiscard]] bool payload_growth(const payload_field& field, std::string_view earlier,
                                  std::string_view record, uint64_t* growth);
