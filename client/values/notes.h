// What a caller should know before a call: which procedures must have been called, as
// the table says, and what the answer does not tell.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "wire/table.h"

struct procedure_note {
  const char* procedure;  // as in the table
  const char* text;
};

std::span<const procedure_note> notes_all();

// "" when there is nothing to say.
const char* notes_text(const procedure_row& procedure);

// The procedures to call first, as people write them.
std::vector<std::string> notes_needs(const procedure_row& procedure);
