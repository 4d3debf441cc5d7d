// JSON Schemas of what --json prints, and of arguments.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "wire/table.h"

// Each is one line of JSON: of a procedure's result, of a command's failure, and of top.
std::string schema_of(const procedure_row& procedure);
std::string schema_of_error();
std::string schema_of_top();

// Of an object with the arguments by name, in their order: one line of JSON.
std::string schema_of_arguments(const procedure_row& procedure);
nlohmann::ordered_json schema_of_argument(const procedure_row& procedure,
                                          const argument_spec& argument);
