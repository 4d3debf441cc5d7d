// Finding the procedures that a pattern or a topic describes.
#pragma once

#include <string_view>
#include <vector>

#include "wire/table.h"

struct search_choice {
  std::string_view pattern = "";  // see search_matches
  const char* topic = nullptr;    // one of topics(); nullptr: of all
  bool active = false;            // without those that do nothing
};

std::vector<const procedure_row*> search_procedures(const search_choice& choice);

// True when name or summary has the pattern somewhere in it; * and ? are wildcards.
bool search_matches(const procedure_row& procedure, std::string_view pattern);
