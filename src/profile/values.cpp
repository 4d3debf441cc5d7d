#include "profile/values.h"

#include <cstdio>
#include <cstdlib>

#include "diag/trace.h"
#include "profile/text.h"
#include "sys/board.h"

int profile_number(const char* path, const char* key, int max_len) {
  char value[kProfileFieldBuffer] = {};
  if (wifiprofile_getParam(path, key, value, max_len) == 0) return 0;
  return atoi(value);
}

int read_bss_field(int bss, const char* key, char (&field)[kProfileFieldBuffer], int max_len) {
  return wifiprofile_getParam_with_index(bss_profile(bss), key, bss_list_position(bss), field,
                                         max_len);
}

int bss_number(int bss, const char* key, int max_len) {
  char value[kProfileFieldBuffer] = {};
  return read_bss_field(bss, key, value, max_len) != 0 ? atoi(value) : 0;
}

unsigned write_bss_field(int bss, std::string_view key, std::string_view value) {
  const profile_setting setting = {key, bss_list_position(bss), value};
  return profile_update(bss_profile(bss), update_form::kFields, {&setting, 1});
}

unsigned write_value(int index, std::string_view key, std::string_view value) {
  const profile_setting setting = {key, 0, value};
  return profile_update(bss_profile(index), update_form::kValues, {&setting, 1});
}

unsigned force_value(int index, std::string_view key, std::string_view value) {
  const profile_setting setting = {key, 0, value};
  return profile_update(bss_profile(index), update_form::kForcedValues, {&setting, 1});
}

void report_profile_failure(const char* caller, const char* attempt, const char* end) {
  trace_rev_error(caller, "failed to %s wifi profile, ret:0\n%s", attempt, end);
}

int update_status(const char* caller, unsigned result, const char* end) {
  if (result != kProfileFailed) return 0;
  report_profile_failure(caller, "update", end);
  return -1;
}

number_text decimal(int number) {
  number_text result;
  snprintf(result.text, sizeof result.text, "%d", number);
  return result;
}

int write_key(const char* caller, int index, const char* key, const char* text, size_t max_length) {
  return update_status(caller, force_value(index, key, front_part(text, max_length)), kBlankEnd);
}

int write_number_key(const char* caller, int index, const char* key, int value) {
  return write_key(caller, index, key, decimal(value).text, kKeyLength);
}
