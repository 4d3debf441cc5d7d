// What a caller should know before a call: which procedures must have been called, and
// what the answer does not tell. One entry per procedure that has any of it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "table.h"

struct procedure_note {
  const char* procedure;  // as in the table
  const char* needs;      // procedures to call first, with blanks between; "": none
  const char* text;       // "": nothing more to say
};

std::span<const procedure_note> notes_all();

// nullptr when there is nothing to say.
const procedure_note* notes_find(const procedure_row& procedure);

// The procedures to call first, as people write them.
std::vector<std::string> notes_needs(const procedure_row& procedure);
