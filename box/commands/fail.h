// `gwbox fail`, the command.
#pragma once

#include <string>
#include <vector>

// WORDS after `gwbox fail`: WHAT HOW [COUNT], "clear" or "list". BOX as for reach_root; AS_JSON:
// prints the list as JSON. Returns the exit status.
int fail_run(const std::string& box, const std::vector<std::string>& words, bool as_json);
