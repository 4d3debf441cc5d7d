// Texts read from a file or standard input, because command-line arguments show up in every
// process list.
#pragma once

#include <string>
#include <vector>

#include "wire/table.h"

// For text arguments, replaces "@FILE" by the file's content, "@-" by standard input, both
// without the final line end, and "@@..." by "@...". False: `error` is one line that shows
// nothing of what was read.
bool argument_files_read(const procedure_row& procedure, std::vector<std::string>& given,
                         std::string& error);
