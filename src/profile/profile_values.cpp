#include "profile/profile_values.h"

#include <cstdlib>

#include "profile/profile.h"
#include "sys/board.h"

int profile_number(const char* path, const char* key, int max_len) {
  char value[kProfileFieldBuffer] = {};
  if (wifiprofile_getParam(path, key, value, max_len) == 0) return 0;
  return atoi(value);
}

int bss_number(int bss, const char* key, int max_len) {
  char value[kProfileFieldBuffer] = {};
  const int found = wifiprofile_getParam_with_index(bss_profile(bss), key, bss_list_position(bss),
                                                    value, max_len);
  return found != 0 ? atoi(value) : 0;
}
