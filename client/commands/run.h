// The whole program, apart from its process.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "base/exit_status.h"

// `arguments` are without the program's name. Results go to `out`. Each failure is one line on
// `err`; wrong arguments add a usage line.
exit_status run(const std::vector<std::string>& arguments, FILE* out, FILE* err);
