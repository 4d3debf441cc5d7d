#pragma once

struct profile_files {
  int band;  // 24 or 5, as in the temporary names
  const char* lock;
  const char* mirror;
};

// The set that a profile path selects, see store.h. Never null.
[[nodiscard]] const profile_files* profile_files_of(const char* path);
