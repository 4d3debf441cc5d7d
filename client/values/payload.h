// What binary results hold: named fields. One layout per procedure whose result
// is a record; text, JSON, schema, reference and packet dissector derive from it.
//
// Records are raw memory of the daemon's side, little-endian; where its words
// travel as return_words they are the same bytes, low word first.
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
  kCounter32,  // counts up, and on from 0 when it is full
  kCounter64,
  kCounterI64,   // signed
  kFlag,         // 32 bits, 0 or not
  kText,         // `width` bytes, up to the first NUL
  kMac,          // six bytes
  kRate,         // 16-bit transmit-rate word of the driver, see rate_word.h
  kRate1024,     // 32 bits, signed, kbit/s of which the daemon takes 1024 for a Mbit/s
  kTime,         // 32 bits, seconds since the epoch, UTC
  kBssPosition,  // 8 bits, of a BSS within its radio, from 0
  kBytes,        // `width` bytes without a known meaning
};

// How confidential a value is. A redacted dump keeps only free values.
enum class content {
  kUnsaid,   // nobody has looked: left out
  kFree,     // a number, or words that the daemon itself chose
  kName,     // any text that a person, a station or another program chose
  kNumber,   // such a text that is a number, a time or a version as a rule, and is then free
  kAddress,  // MAC or IP address
  kSecret,
};

// The values that stand for one that is not known: "-" in text, null in JSON.
enum class not_known {
  kNever,
  kMinusOne,
  kZero,
  kNoSignal,  // 0 and -127
};

struct payload_field {
  const char* name;  // in JSON
  field_type type;
  uint16_t offset;      // in the record, or in the row
  uint16_t width;       // bytes, of kText and kBytes; else 0
  const char* unit;     // "dBm", "s", ...; "" where there is none
  const char* heading;  // of the column in text output; "": in JSON only
  const char* meaning;  // "" where the name says all that is known
  content holds = content::kUnsaid;
  not_known unknown = not_known::kNever;
};

// Rows of one shape within a record.
struct payload_rows {
  const char* name;
  // Where the number of rows in use stands, a u32; kAllRows: all are. More
  // than `capacity` counts as `capacity`.
  uint16_t count_at;
  uint16_t first;   // offset of the first row
  uint16_t stride;  // bytes from row to row
  uint16_t capacity;
  std::span<const payload_field> fields;
};
inline constexpr uint16_t kAllRows = 0xffff;

struct payload_layout {
  const char* procedure;  // as in the table
  std::span<const payload_field> fields;
  const payload_rows* rows;  // nullptr: none
};

// Of a procedure with a WORDS or IMAGE payload; nullptr for any other.
const payload_layout* payload_find(const procedure_row& procedure);

// The value of a procedure with an INT or TEXT payload. Unit and meaning are "" where
// there is none, or where the procedure's name says it.
struct value_meaning {
  const char* procedure;
  const char* unit;
  const char* meaning;
  content holds = content::kUnsaid;
  not_known unknown = not_known::kNever;
};
const value_meaning& payload_value(const procedure_row& procedure);

// All of them.
std::span<const value_meaning> payload_values();

// What return codes mean: "negative: the call failed" but for the setters that
// answer as the profile's update does.
const char* payload_codes(const procedure_row& procedure);
bool payload_failed(const procedure_row& procedure, int32_t code);

// Bytes of a field in the record.
uint32_t payload_width(const payload_field& field);

// Rows in use in `record`, which has the size that the table says.
uint32_t payload_row_count(const payload_rows& rows, std::string_view record);

// The bytes of one row.
std::string_view payload_row(const payload_rows& rows, std::string_view record, uint32_t index);

// Numbers of a record; a text without its padding.
uint64_t payload_unsigned(const payload_field& field, std::string_view record);
int64_t payload_signed(const payload_field& field, std::string_view record);
std::string_view payload_bytes(const payload_field& field, std::string_view record);
// The values that mean "not known", and whether a value is another one. A time of 0 is not known
// either.
std::span<const int> payload_unknown(not_known unknown);
bool payload_is_known(not_known unknown, int64_t value);
bool payload_is_known(const payload_field& field, std::string_view record);

// "MEANING; -1: not known", or the one of the two that there is.
std::string payload_meaning(const char* meaning, not_known unknown);

bool payload_is_signed(field_type type);
bool payload_is_counter(field_type type);

// How much a counter grew since an earlier record. False when it was or is not known, or
// was reset, as after a restart of the radio. The shorter distance decides between a wrap and a
// reset. A 64-bit field may carry a 32-bit counter of the driver.
[[nodiscard]] bool payload_growth(const payload_field& field, std::string_view earlier,
                                  std::string_view record, uint64_t* growth);
