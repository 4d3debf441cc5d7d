// Texts that a command line names rather than holds: what is in an argument stands in
// every list of processes.
#pragma once

#include <string>
#include <vector>

#include "wire/table.h"

// Of the words for arguments that are texts, replaces "@FILE" by what the file holds, "@-"
// by what standard input holds, each without the line end at its end, and "@@..." by
// "@...". False: `error` is one line, without anything that was read.
bool argument_files_read(const procedure_row& procedure, std::vector<std::string>& given,
                         std::string& error);
