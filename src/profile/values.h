#pragma once

#include <cstddef>
#include <string_view>

#include "profile/store.h"

// Values of the profiles as the operations read and write them: one key, or one field
// of it, of the profile that holds a BSS or radio (sys/board.h).

// Longest value of a switch, such as "RadioOn".
constexpr int kSwitchLimit = 2;

// A key as a number; 0 when it is missing or has more than `max_len` characters.
[[nodiscard]] int profile_number(const char* path, const char* key, int max_len);

// The field of a BSS. Returns 1, or 0 when it is missing; wifiprofile_getParam_with_index
// says what max_len means.
[[nodiscard]] int read_bss_field(int bss, const char* key, char (&field)[kProfileFieldBuffer],
                                 int max_len);

// The same as a number; 0 when it is missing.
[[nodiscard]] int bss_number(int bss, const char* key, int max_len);

// Updates of one key: the field of a BSS, the whole value, and that by force. They
// return what profile_update does.
unsigned write_bss_field(int bss, std::string_view key, std::string_view value);
unsigned write_value(int index, std::string_view key, std::string_view value);
unsigned force_value(int index, std::string_view key, std::string_view value);

// Reports in the name of `caller` that its attempt to "update" or to "get" failed.
// Most of these messages have a blank after their line end, `end`: kept on purpose.
constexpr const char* kBlankEnd = " ";
void report_profile_failure(const char* caller, const char* attempt, const char* end);

// The status that an update's result stands for: 0 when the value is in place, -1
// when it is not, which is reported.
[[nodiscard]] int update_status(const char* caller, unsigned result, const char* end);

// A number as the profiles have it.
struct number_text {
  char text[12];
};
[[nodiscard]] number_text decimal(int number);

// Longest number that is written or read as a whole value, in characters.
constexpr int kKeyLength = 256;

// Writes a key of the index's profile, added where it is missing, on behalf of
// `caller`: a text of at most `max_length` characters, or a number. 0, or -1
// when the profile cannot be written, reported.
[[nodiscard]] int write_key(const char* caller, int index, const char* key, const char* text,
                            size_t max_length);
[[nodiscard]] int write_number_key(const char* caller, int index, const char* key, int value);
