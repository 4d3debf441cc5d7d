#include "steer/steer_keys.h"

#include <cstdio>
#include <cstdlib>

#include "diag/trace.h"
#include "profile/profile.h"
#include "sys/board.h"

int write_key(const char* caller, int index, const char* key, const char* text, int max_length) {
  char value[kPayloadKeyLength + 1];
  snprintf(value, sizeof value, "%.*s", max_length, text);
  const unsigned result = wifiprofile_updateParam_force(bss_profile(index), key, value, "");
  if (result != kProfileFailed) return 0;
  trace_rev_error(caller, "failed to update wifi profile, ret:%u\n ", result);
  return -1;
}

void note_number_key(int index, const char* key, int value) {
  char text[16];
  snprintf(text, sizeof text, "%d", value);
  wifiprofile_updateParam_force(bss_profile(index), key, text, "");
}

int write_number_key(const char* caller, int index, const char* key, int value) {
  char text[16];
  snprintf(text, sizeof text, "%d", value);
  return write_key(caller, index, key, text, kKeyLength);
}

static int read_key(const char* caller, int index, const char* key, char* text, int max_length,
                    int missing, const char* attempt) {
  const int found = wifiprofile_getParam(bss_profile(index), key, text, max_length);
  if (found != 0) return found;
  trace_rev_error(caller, "failed to %s wifi profile, ret:%d\n ", attempt, found);
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
#include "steer/steer_keys.def"
