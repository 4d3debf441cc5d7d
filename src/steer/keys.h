#pragma once

#include "profile/values.h"

// Operations on the keys of keys.def, declared from it.

// Longest values that are read, in characters; of a number kKeyLength.
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
