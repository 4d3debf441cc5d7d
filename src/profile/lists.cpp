#include <cstdarg>
#include <cstdlib>

#include "diag/trace.h"
#include "profile/store.h"

// Updates whose settings come as lists of arguments.

namespace {

// The record owns `data`; update_from_list frees it.
struct setting_list {
  profile_setting* data = nullptr;
  size_t length = 0;
  size_t capacity = 0;
};

}  // namespace

static bool append_setting(setting_list* list, const profile_setting& setting) {
  if (list->length == list->capacity) {
    const size_t capacity = 2 * list->capacity + 4;
    void* grown = realloc(list->data, capacity * sizeof setting);
    if (grown == nullptr) return false;
    list->data = static_cast<profile_setting*>(grown);
    list->capacity = capacity;
  }
  list->data[list->length++] = setting;
  return true;
}

// Reads arguments up to the empty key, or up to a negative index, which the update
// refuses. Takes a pointer, because a va_list passed by value may not advance the
// caller's. False when memory runs out.
static bool take_settings(bool with_index, va_list* arguments, setting_list* list) {
  for (int index = 0; index >= 0;) {
    const char* key = va_arg(*arguments, const char*);
    if (*key == '\0') break;
    index = with_index ? va_arg(*arguments, int) : 0;
    const char* value = va_arg(*arguments, const char*);
    if (!append_setting(list, {key, index, value})) return false;
  }
  return true;
}

static unsigned update_from_list(const char* caller, const char* path, update_form form,
                                 va_list* arguments) {
  const bool with_index = form == update_form::kFields || form == update_form::kForcedFields;
  setting_list list;
  unsigned result = kProfileFailed;
  if (take_settings(with_index, arguments, &list)) {
    result = profile_update(path, form, {list.data, list.length});
  } else {
    trace_rpc_error(caller, "out of memory, %s is unchanged\n", path);
  }
  free(list.data);
  return result;
}

unsigned wifiprofile_updateParam(const char* path, ...) {
  va_list arguments;
  va_start(arguments, path);
  const unsigned result = update_from_list(__func__, path, update_form::kValues, &arguments);
  va_end(arguments);
  return result;
}

unsigned wifiprofile_updateParam_with_index(const char* path, ...) {
  va_list arguments;
  va_start(arguments, path);
  const unsigned result = update_from_list(__func__, path, update_form::kFields, &arguments);
  va_end(arguments);
  return result;
}

unsigned wifiprofile_updateParam_force(const char* path, ...) {
  va_list arguments;
  va_start(arguments, path);
  const unsigned result = update_from_list(__func__, path, update_form::kForcedValues, &arguments);
  va_end(arguments);
  return result;
}

unsigned wifiprofile_updateParam_with_index_force(const char* path, ...) {
  va_list arguments;
  va_start(arguments, path);
  const unsigned result = update_from_list(__func__, path, update_form::kForcedFields, &arguments);
  va_end(arguments);
  return result;
}
