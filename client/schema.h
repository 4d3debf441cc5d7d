// JSON Schema of what --json prints for a procedure's result.
#pragma once

#include <string>

#include "table.h"

// One line of JSON.
std::string schema_of(const procedure_row& procedure);
