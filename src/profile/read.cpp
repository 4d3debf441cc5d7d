#include <cerrno>
#include <cstdio>
#include <cstring>

#include "diag/trace.h"
#include "profile/files.h"
#include "profile/store.h"
#include "profile/text.h"
#include "sys/lock.h"
#include "sys/whole_file.h"

static int find_value(std::string_view content, std::string_view key, char* buffer, int max_len) {
  while (!content.empty()) {
    const std::string_view line = next_line(&content);
    setting found;
    if (!sets_key(line, key) || !parse_setting(line, &found)) continue;
    const int length = static_cast<int>(found.value.size());
    if (length <= max_len) {
      memcpy(buffer, found.value.data(), found.value.size());
      buffer[length] = '\0';
      return 1;
    }
    // Says malloc although nothing is allocated, and counts the newline: kept on purpose.
    trace_rpc_error("wifiprofile_getParam",
                    "malloc failed. value:%.*s, param_len=%d, value_len=%d\n", length,
                    found.value.data(), max_len, length + 1);
  }
  return 0;
}

int wifiprofile_getParam(const char* path, const char* key, char* buffer, int max_len) {
  const int lock = fread_lock(profile_files_of(path)->lock);
  file_image image;
  const bool opened = file_read(path, &image);
  const int error = errno;
  funlock(lock);
  if (!opened) {
    RPC_ERROR("%s does not exist\n", path);
    errno = error;
    perror("wifiprofile_getParam fopen");
    return 0;
  }
  const int found = find_value({image.data, image.length}, key, buffer, max_len);
  file_release(&image);
  return found;
}

int wifiprofile_getParam_with_index(const char* path, const char* key, int index, char* buffer,
                                    int max_len) {
  if (index < 0) {
    RPC_ERROR("Index %d is error, it should be 0 or positive\n", index);
    return 0;
  }
  char value[kProfileFieldBuffer] = {};
  if (wifiprofile_getParam(path, key, value, sizeof value - 1) == 0) return 0;
  std::string_view field;
  bool last = false;
  if (!find_field(value, index, &field, &last)) return 0;
  // max_len does not limit the last field: kept on purpose, see store.h.
  if (!last && max_len >= 0) field = front_part(field, static_cast<size_t>(max_len));
  memcpy(buffer, field.data(), field.size());
  buffer[field.size()] = '\0';
  return 1;
}
