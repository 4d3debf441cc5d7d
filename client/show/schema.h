// JSON Schemas of --json output and of arguments.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "wire/table.h"

// One line of JSON each: for a procedure's result, a command's failure, and top.
std::string schema_of(const procedure_row& procedure);
std::string schema_of_error();
std::string schema_of_top();

// For an object with the arguments by name, in order: one line of JSON.
std::string schema_of_arguments(const procedure_row& procedure);
nlohmann::ordered_json schema_of_argument(const procedure_row& procedure,
                                          const argument_spec& argument);
