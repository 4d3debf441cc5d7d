// Where a command's output goes: results to one stream, each failure as one line to the other.
#pragma once

#include <cstdio>
#include <string>

#include "base/exit_status.h"
#include "show/failure.h"

// What is told of at the end, when the output could not be written.
struct output_notes {
  int error_number;  // of the first write that failed, 0: none has
  bool called;       // a call was made and answered
};

struct output_streams {
  FILE* out;
  FILE* err;
  output_notes* notes;
  bool json;  // failures are told on `out` too
};

void print(const output_streams& streams, const std::string& text);

// What was printed goes out now.
void print_flush(const output_streams& streams);

// One line to standard error; returns `status`.
exit_status note(const output_streams& streams, exit_status status, const std::string& line);

// The same for what ends a command without a result, which --json tells, too.
exit_status fail(const output_streams& streams, const failure_report& failure);
exit_status fail(const output_streams& streams, exit_status status, const std::string& line);

// Columns of the terminal that `out` is, or 0.
size_t terminal_width(FILE* out);
