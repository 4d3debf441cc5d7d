#pragma once

// The companion files of a profile.
struct profile_files {
  int band;  // 24 or 5, as the temporary names carry it
  const char* lock;
  const char* mirror;
};

// The set that a profile path selects, see profile.h. Never null.
[[nodiscard]] const profile_files* profile_files_of(const char* path);
