#pragma once

#include <string>
#include <vector>

// Whether the profile that an update leaves is whole.

struct profile_pair {
  std::string band24;
  std::string band5;
};

profile_pair read_profiles();

// Whether `now` is `before` or `after`, or a mix of the two when several lines differ, as
// several updates make them: every line is whole, none is lost.
[[nodiscard]] bool is_whole(const std::string& before, const std::string& after,
                            const std::string& now);
