// What the arguments mean, for people: one entry per member name of the table,
// and one more where a procedure gives a name a meaning of its own.
#pragma once

#include <string_view>

#include "table.h"

struct meaning_entry {
  const char* procedure;  // as in the table; nullptr: of every procedure
  const char* argument;
  const char* text;              // meaning, unit and range
  const char* example;           // an accepted value
  const char* values = nullptr;  // all that make sense, with blanks between
};

// nullptr when the argument has no entry.
const meaning_entry* meanings_find(const procedure_row& procedure, std::string_view argument);
