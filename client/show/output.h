// Where output goes: results to one stream, each failure as one line to the other.
#pragma once

#include <cstdio>
#include <string>

#include "base/exit_status.h"
#include "show/failure.h"

// Needed at the end to report that the output could not be written.
struct output_notes {
  int error_number;  // of the first failed write; 0: none
  bool called;       // a call was made and answered
};

struct output_streams {
  FILE* out;
  FILE* err;
  output_notes* notes;
  bool json;  // failures are reported on `out` too
};

void print(const output_streams& streams, const std::string& text);

void print_flush(const output_streams& streams);

// Prints one line to standard error; returns `status`.
exit_status print_note(const output_streams& streams, exit_status status, const std::string& line);

// Reports a failure that ends the command, with --json on `out` too.
exit_status fail(const output_streams& streams, const failure_report& failure);
exit_status fail(const output_streams& streams, exit_status status, const std::string& line);

// The width of the terminal `out`; 0 if it is not one.
size_t terminal_width(FILE* out);
