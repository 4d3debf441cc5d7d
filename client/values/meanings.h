// What the arguments mean, for people, and what they must be: one entry per member
// name of the table, and one more where a procedure gives a name a meaning of its own.
#pragma once

#include <string>
#include <string_view>

#include "values/constraint.h"
#include "wire/table.h"

struct meaning_entry {
  const char* procedure;  // as in the table; nullptr: of every procedure
  const char* argument;
  const char* text;     // meaning and unit; what values there are is the constraint's to say
  const char* example;  // an accepted value
  constraint limits = {constraint_kind::kByType};
};

// nullptr when the argument has no entry.
const meaning_entry* meanings_find(const procedure_row& procedure, std::string_view argument);

// What the argument's values must be: the entry's constraint, else that of its type.
constraint meanings_limits(const procedure_row& procedure, const argument_spec& argument);

// Meaning, unit and the constraint's words, for people.
std::string meanings_text(const procedure_row& procedure, const argument_spec& argument);
