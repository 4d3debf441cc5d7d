// What the arguments mean, and which values they take. One entry per member name of the table,
// plus one where a procedure gives a name a different meaning.
#pragma once

#include <string>
#include <string_view>

#include "values/constraint.h"
#include "wire/table.h"

struct meaning_entry {
  const char* procedure;  // as in the table; nullptr: every procedure
  const char* argument;
  const char* text;     // meaning and unit; the constraint describes the values
  const char* example;  // a valid value
  constraint limits = {constraint_kind::kByType};
};

// nullptr if the argument has no entry.
const meaning_entry* meanings_find(const procedure_row& procedure, std::string_view argument);

// The values that the argument takes: the entry's constraint, or else that of its type.
constraint meanings_limits(const procedure_row& procedure, const argument_spec& argument);

std::string meanings_text(const procedure_row& procedure, const argument_spec& argument);
