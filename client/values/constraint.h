// Which values of an argument the daemon handles as the caller means them. One record drives
// the check before a call, its description, completion and the arguments' JSON Schema.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

enum class constraint_kind {
  kByType,      // any value of the argument's type
  kInteger,     // any integer of the type
  kAnyText,     // any text without control characters
  kSwitch,      // on or off
  kNumber,      // an integer within the ranges
  kWord,        // one of the words, spelled exactly
  kText,        // like kAnyText, with a length in bytes within the ranges
  kHex,         // hexadecimal digits, an even number within the ranges
  kDigits,      // decimal digits, their number within the ranges
  kPassphrase,  // like kText, or 64 hexadecimal digits
  kMac,         // six hexadecimal pairs joined by colons
  kIpv4,        // four decimal numbers joined by dots
};

struct constraint_range {
  int64_t low;
  int64_t high;
  const char* meaning;  // nullptr: none
};

inline constexpr unsigned kRangesMax = 4;

struct constraint {
  constraint_kind kind;
  constraint_range at[kRangesMax] = {};
  unsigned count = 0;
  const char* words = "";   // kWord: separated by blanks
  bool list_field = false;  // the profile keeps the text in a list: no ";"
};

inline std::span<const constraint_range> constraint_ranges(const constraint& limits) {
  return {limits.at, limits.count};
}

// Whether a word of the command line satisfies the constraint. Numbers are decimal, or
// hexadecimal after 0x.
bool constraint_holds(const constraint& limits, std::string_view given);

// The position, from 1, of the first character that no value may have, such as a line end in a
// text, and what it is. 0 if there is none, or if values are not texts or digits.
size_t constraint_misfit(const constraint& limits, std::string_view given, const char** what);

// A JSON Schema pattern for the characters that a text must not have.
const char* constraint_misfit_pattern(const constraint& limits);

// "1 to 8 (2.4 GHz) or 9 to 16 (5 GHz)", "1 to 32 bytes", "on or off"; empty if the constraint
// adds nothing to the type.
std::string constraint_words(const constraint& limits);

// The same with the type: "an integer, 0 to 100", "a text of 1 to 32 bytes".
std::string constraint_form(const constraint& limits);

// All values if there are few, otherwise the notable ones; empty for free text.
std::vector<std::string> constraint_values(const constraint& limits);

// The choice that was probably meant; empty if none is close.
std::string constraint_nearest(const constraint& limits, std::string_view given);

// Decimal, or hexadecimal after 0x, with optional sign. No octal: 010 is ten.
bool constraint_parse_integer(std::string_view text, int64_t* value);

// 0, 1, off, on, no, yes, false or true, in any case.
bool constraint_parse_switch(std::string_view text, bool* value);
