#pragma once

#include <cstddef>
#include <string_view>

#include "profile/store.h"

// Values of the profiles in the form that operations need: one key, or one field of it,
// in the profile of a BSS or radio (sys/board.h).

// Longest value of a switch, such as "RadioOn".
constexpr int kSwitchLimit = 2;

// A key as a number; 0 when it is missing or has more than `max_len` characters.
[[nodiscard]] int profile_number(const char* path, const char* key, int max_len);

// The field of a BSS. Returns 1, or 0 when it is missing; wifiprofile_getParam_with_index
// explains max_len.
[[nodiscard]] int read_bss_field(int bss, const char* key, char (&field)[kProfileFieldBuffer],
                                 int max_len);

// The same as a number; 0 when it is missing.
[[nodiscard]] int bss_number(int bss, const char* key, int max_len);

// Updates of one key: the field of a BSS, the whole value, and the whole value by force.
// They return the result of profile_update.
unsigned write_bss_field(int bss, std::string_view key, std::string_view value);
unsigned write_value(int index, std::string_view key, std::string_view value);
unsigned force_value(int index, std::string_view key, std::string_view value);

// Reports in the name of `caller` that its "update" or "get" failed. Most of these
// messages have a blank after their newline, `end`: kept on purpose.
constexpr const char* kBlankEnd = " ";
void report_profile_failure(const char* caller, const char* attempt, const char* end);

// The status for an update's result: 0 when the value is stored, otherwise -1, reported.
[[nodiscard]] int update_status(const char* caller, unsigned result, const char* end);

struct number_text {
  char text[12];
};
[[nodiscard]] number_text decimal(int number);

// Longest number that is written or read as a whole value, in characters.
constexpr int kKeyLength = 256;

// Writes a key of the index's profile, in the name of `caller`, and adds it when it is
// missing: a text of at most `max_length` characters, or a number. 0, or -1, reported,
// when the profile cannot be written.
[[nodiscard]] int write_key(const char* caller, int index, const char* key, const char* text,
                            size_t max_length);
[[nodiscard]] int write_number_key(const char* caller, int index, const char* key, int value);
