// What the values of an argument must be so that the daemon does with them what
// the caller means. One record is the source of the check before a call, of the
// words that describe it, of completion and of the arguments' JSON Schema.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

enum class constraint_kind {
  kByType,      // whatever the argument's type takes
  kInteger,     // any that the type holds
  kAnyText,     // any text without control characters
  kSwitch,      // on or off
  kNumber,      // an integer of the ranges
  kWord,        // one of the words, spelled exactly so
  kText,        // the same, length in bytes of the ranges
  kHex,         // hexadecimal digits, an even number of the ranges
  kDigits,      // decimal digits, their number of the ranges
  kPassphrase,  // as kText; or 64 hexadecimal digits
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
  const char* words = "";   // kWord: with blanks between
  bool list_field = false;  // a text that the profile keeps in a list: no ";"
};

inline std::span<const constraint_range> constraint_ranges(const constraint& limits) {
  return {limits.at, limits.count};
}

// Whether a word of the command line keeps to it. Numbers are decimal or, after
// 0x, hexadecimal.
bool constraint_holds(const constraint& limits, std::string_view given);

// The first character that is in no value, such as a line end in a text: where it is,
// from 1 on, and what. 0 when there is none, and for values that are no texts or digits.
size_t constraint_misfit(const constraint& limits, std::string_view given, const char** what);

// Every character that a text must not have, as a JSON Schema's pattern.
const char* constraint_misfit_pattern(const constraint& limits);

// "1 to 8 (2.4 GHz) or 9 to 16 (5 GHz)", "1 to 32 bytes", "on or off"; empty when
// it says no more than the type does.
std::string constraint_words(const constraint& limits);

// The same as what an argument takes: "an integer, 0 to 100", "a text of 1 to 32 bytes".
std::string constraint_form(const constraint& limits);

// All values where they are few, else those that stand out; empty for free ones.
std::vector<std::string> constraint_values(const constraint& limits);

// Of a choice of words, the one that was probably meant; empty when none is near.
std::string constraint_nearest(const constraint& limits, std::string_view given);

// Decimal or, after 0x, hexadecimal, with a sign; no octal form: 010 is ten.
bool constraint_parse_integer(std::string_view text, int64_t* value);

// 0, 1, off, on, no, yes, false or true, in any case.
bool constraint_parse_switch(std::string_view text, bool* value);
