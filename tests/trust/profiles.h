#pragma once

#include <string>
#include <vector>

// Whether what an update leaves is whole.

struct profile_pair {
  std::string band24;
  std::string band5;
};

profile_pair read_profiles();

// Whether `now` is `before` or `after`, or has of several lines that differ, as several
// updates make them, some old and some new: each line whole, none lost, none twice.
[[nodiscard]] bool is_whole(const std::string& before, const std::string& after,
                            const std::string& now);
