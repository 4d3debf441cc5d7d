// Finds procedures by pattern or topic.
#pragma once

#include <string_view>
#include <vector>

#include "wire/table.h"

struct search_choice {
  std::string_view pattern = "";  // see search_matches
  const char* topic = nullptr;    // one of topics(); nullptr: all
  bool active = false;            // without procedures that do nothing
};

std::vector<const procedure_row*> search_procedures(const search_choice& choice);

// Whether the name or summary contains the pattern; * and ? are wildcards.
bool search_matches(const procedure_row& procedure, std::string_view pattern);
