// The procedures explained from the table, for people.
#pragma once

#include <string>
#include <vector>

#include "values/payload.h"
#include "wire/table.h"

// Number, name and summary of each, a line each, or wrapped to `width` columns
// (0: not wrapped).
std::string describe_list(const std::vector<const procedure_row*>& procedures, size_t width);

// The word of each topic and how many procedures it has, a line each.
std::string describe_topics();

// Everything about one procedure, in at most 80 columns where words allow it.
std::string describe_procedure(const procedure_row& procedure);

// "bool", "string", "char[64]", ...
std::string describe_type(const argument_spec& argument);

// "u32", "text[18]", "rate", ...: a field of a record.
std::string describe_field(const payload_field& field);

// What a value means and its unit: "MEANING [UNIT]", or the one that is there.
std::string describe_meaning(const std::string& meaning, const char* unit);

// What is printed when the call succeeds.
std::string describe_result(const procedure_row& procedure);

// A command line that is accepted, quoted for a shell.
std::string describe_example(const procedure_row& procedure);

// The procedures to call first, with commas between; empty where there are none.
std::string describe_needs(const procedure_row& procedure);

// What a caller should know besides, such as that nothing is done; empty as a rule.
std::string describe_note(const procedure_row& procedure);
