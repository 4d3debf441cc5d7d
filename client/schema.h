// JSON Schemas of what --json prints.
#pragma once

#include <string>

#include "table.h"

// Each is one line of JSON: of a procedure's result, of a command's failure, and of top.
std::string schema_of(const procedure_row& procedure);
std::string schema_of_error();
std::string schema_of_top();
