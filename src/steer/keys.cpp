#include "steer/keys.h"

#include <cstdlib>

#include "profile/text.h"
#include "profile/values.h"
#include "sys/board.h"

static int read_key(const char* caller, int index, const char* key, char* text, int max_length,
                    int missing, const char* attempt) {
  const int found = wifiprofile_getParam(bss_profile(index), key, text, max_length);
  if (found != 0) return found;
  report_profile_failure(caller, attempt, kBlankEnd);
  return missing;
}

static int read_number_key(const char* caller, int index, const char* key, int* value,
                           const char* attempt) {
  char text[kKeyLength + 1] = {};
  const int found = read_key(caller, index, key, text, kKeyLength, -1, attempt);
  if (found == 1) *value = atoi(text);
  return found;
}

#define TEXT_SETTER(operation, key, max_length)               \
  int operation(int index, const char* text) {                \
    return write_key(__func__, index, key, text, max_length); \
  }
#define NUMBER_SETTER(operation, key)                                       \
  int operation(int index, unsigned value) {                                \
    return write_number_key(__func__, index, key, static_cast<int>(value)); \
  }
#define TEXT_GETTER(operation, key, max_length, missing, attempt)              \
  int operation(int index, char(&text)[max_length + 1]) {                      \
    return read_key(__func__, index, key, text, max_length, missing, attempt); \
  }
#define NUMBER_GETTER(operation, key, attempt)                    \
  int operation(int index, int* value) {                          \
    return read_number_key(__func__, index, key, value, attempt); \
  }
#include "steer/keys.def"
