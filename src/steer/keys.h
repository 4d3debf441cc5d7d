#pragma once

#include "profile/values.h"

// The operations on the keys of keys.def.

// Longest values that are read, in characters; kKeyLength for a number.
constexpr int kMacKeyLength = 18;
constexpr int kPayloadKeyLength = 1025;

// A getter's buffer holds max_length bytes and one more. It is unchanged when the key is
// missing. A setter writes its number signed.
#define TEXT_SETTER(operation, ...) int operation(int index, const char* text);
#define TEXT_GETTER(operation, key, max_length, ...) \
  int operation(int index, char(&text)[max_length + 1]);
#define NUMBER_SETTER(operation, ...) int operation(int index, unsigned value);
#define NUMBER_GETTER(operation, ...) int operation(int index, int* value);
#include "steer/keys.def"
