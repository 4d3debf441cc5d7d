// The whole program, without the process around it.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "base/exit_status.h"

// `arguments` without the program's name. Results go to `out`, each failure as
// one line to `err` (wrong arguments have the usage line besides).
exit_status run(const std::vector<std::string>& arguments, FILE* out, FILE* err);
