// Descriptions of the procedures for people, made from the table.
#pragma once

#include <string>
#include <vector>

#include "values/payload.h"
#include "wire/table.h"

// Number, name and summary, one line each, wrapped to `width` columns unless it is 0.
std::string describe_list(const std::vector<const procedure_row*>& procedures, size_t width);

// The word of each topic and its number of procedures, one line each.
std::string describe_topics();

// Everything about one procedure, in at most 80 columns unless a word is longer.
std::string describe_procedure(const procedure_row& procedure);

// "bool", "string", "char[64]", ...
std::string describe_type(const argument_spec& argument);

// "u32", "text[18]", "rate", ...: a field of a record.
std::string describe_field(const payload_field& field);

// "MEANING [UNIT]", or whichever of the two there is.
std::string describe_meaning(const std::string& meaning, const char* unit);

std::string describe_result(const procedure_row& procedure);

// A valid command line, quoted for a shell.
std::string describe_example(const procedure_row& procedure);

// The procedures to call first, separated by commas; may be empty.
std::string describe_needs(const procedure_row& procedure);

// What else a caller should know, such as that nothing is done. Usually empty.
std::string describe_note(const procedure_row& procedure);
