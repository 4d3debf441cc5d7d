#pragma once

#include <cstddef>

// Operations on the keys of steer_keys.def, declared from it, and what other
// operations on such keys share.

// Longest values that are read, in characters.
constexpr int kKeyLength = 256;
constexpr int kMacKeyLength = 18;
constexpr int kPayloadKeyLength = 1025;

// A getter's buffer holds one byte more than its max_length and stays as it is
// where the key is missing; a setter's number is written signed.
#define TEXT_SETTER(operation, ...) int operation(int index, const char* text);
#define TEXT_GETTER(operation, key, max_length, ...) \
  int operation(int index, char(&text)[max_length + 1]);
#define NUMBER_SETTER(operation, ...) int operation(int index, unsigned value);
#define NUMBER_GETTER(operation, ...) int operation(int index, int* value);
#include "steer/keys.def"

// Writes a key of the index's profile, added where it is missing, on behalf of
// `caller`: a text of at most `max_length` characters, or a number. 0, or -1
// when the profile cannot be written, reported.
[[nodiscard]] int write_key(const char* caller, int index, const char* key, const char* text,
                            size_t max_length);
[[nodiscard]] int write_number_key(const char* caller, int index, const char* key, int value);
