// What a profile says and the driver does not do yet: an interface reads its profile only when it
// goes up.
#pragma once

#include "gateway/profile_diff.h"
#include "gateway/state.h"

struct pending_change {
  std::string file;
  int radio;              // number of its first interface, 0 or 8
  profile_change change;  // from what the driver holds to what the profile says
};

// Of the radios that are up.
std::vector<pending_change> pending_changes(const trap_state& trap);

// The same as a JSON array of objects with "file", "interface" (ra0 or ra8), "key" and, for a list,
// "field".
std::string pending_json(const trap_state& trap);
