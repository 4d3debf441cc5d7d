// What a caller should know before a call: the procedures to call first, as the table lists
// them, and what the answer does not say.
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

const char* notes_text(const procedure_row& procedure);

// The names of the procedures to call first, in lower case.
std::vector<std::string> notes_needs(const procedure_row& procedure);
