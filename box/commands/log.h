// `gwbox log`: prints the request journal of a box.
#pragma once

#include <string>

// BOX as for reach_root. JSON: the lines as they are; else one readable line per request. FOLLOW:
// goes on until the box ends. Returns the exit status.
int log_print(const std::string& box, bool follow, bool json);
