// What every command of the program needs: its streams, its exit status and
// calls that explain themselves when they fail.
#pragma once

#include <cstdio>
#include <string>

#include "commands/options.h"
#include "commands/run.h"
#include "wire/call.h"
#include "wire/reply.h"
#include "wire/table.h"

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

// Why there is no result.
struct session_failure {
  exit_status status = kExitDone;
  const char* kind = "";  // one word, for programs
  std::string line;       // for people; "": there is a result
  bool given_up = false;  // by the user
};

void print(const output_streams& streams, const std::string& text);

// What was printed goes out now.
void print_flush(const output_streams& streams);

// One line to standard error; returns `status`.
exit_status note(const output_streams& streams, exit_status status, const std::string& line);

// The same for what ends a command without a result, which --json tells, too.
exit_status fail(const output_streams& streams, const session_failure& failure);
exit_status fail(const output_streams& streams, exit_status status, const std::string& line);

// Columns of the terminal that `out` is, or 0.
size_t terminal_width(FILE* out);

// Calls; false, explained, when there is no result: *status is then what to
// exit with. `name` names the procedure in messages.
bool session_call(const output_streams& streams, const client_options& options, uint32_t number,
                  const std::string& name, const byte_string& arguments, call_answer& answer,
                  exit_status* status);

// A call whose words are encoded once and that is made any number of times.
struct prepared_call {
  const procedure_row* procedure;
  byte_string arguments;
};

// From the words PROCEDURE ARGUMENT...; false, explained, when they are none, or
// arguments that make no sense and are not forced. `first`: a command may stand there too.
bool session_prepare(const output_streams& streams, const client_options& options,
                     const std::vector<std::string>& words, prepared_call& prepared,
                     exit_status* status, bool first = false);

// Calls and decodes; false, explained, when there is no result.
bool session_ask(const output_streams& streams, const client_options& options,
                 const prepared_call& prepared, decoded_reply& reply, exit_status* status);

// The same without a word.
session_failure session_try(const client_options& options, const prepared_call& prepared,
                            decoded_reply& reply, const call_idle* idle = nullptr);

// The number of the first BSS, 1 or 9, of the radio that a call is about.
int session_first_bss(const prepared_call& prepared);

// "no procedure 'x'; did you mean ...?" `first`: a command may stand there too.
exit_status unknown_procedure(const output_streams& streams, const std::string& word,
                              bool first = false);
