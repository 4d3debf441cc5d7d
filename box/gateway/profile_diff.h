// What changed between two contents of a profile.
#pragma once

#include <map>
#include <string>
#include <vector>

struct profile_change {
  std::string key;
  int field;  // of a list, from 0; -1: the whole value
  bool had, has;
  std::string before, after;
};

// In the order of the keys. Of several lines with a key the first counts, as for the driver.
std::vector<profile_change> profile_changes(const std::string& before, const std::string& after);

// The same of profiles that were read.
std::vector<profile_change> profile_value_changes(const std::map<std::string, std::string>& before,
                                                  const std::map<std::string, std::string>& after);
