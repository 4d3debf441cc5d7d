// Shared by all commands: calls that report their own failures.
#pragma once

#include <string>

#include "commands/options.h"
#include "show/output.h"
#include "wire/call.h"
#include "wire/reply.h"
#include "wire/table.h"

// Calls. If there is no result, reports why, sets *status to the exit status and returns false.
// `name` is the procedure's name for messages.
bool session_call(const output_streams& streams, const client_options& options, uint32_t number,
                  const std::string& name, const byte_string& arguments, call_answer& answer,
                  exit_status* status);

// A call encoded once and made any number of times.
struct prepared_call {
  const procedure_row* procedure;
  byte_string arguments;
};

// Prepares a call from the words PROCEDURE and ARGUMENTs. Reports and returns false if there are
// no words, or if arguments make no sense and are not forced. `first`: the word may also have
// been meant as a command.
bool session_prepare(const output_streams& streams, const client_options& options,
                     const std::vector<std::string>& words, prepared_call& prepared,
                     exit_status* status, bool first = false);

// Calls and decodes. Reports and returns false if there is no result.
bool session_ask(const output_streams& streams, const client_options& options,
                 const prepared_call& prepared, decoded_reply& reply, exit_status* status);

// The same, without reporting.
failure_report session_try(const client_options& options, const prepared_call& prepared,
                           decoded_reply& reply, const call_idle* idle = nullptr);

// The number of the first BSS, 1 or 9, on the radio of the call.
int session_first_bss(const prepared_call& prepared);

// Reports "no procedure 'x'; did you mean ...?". `first`: the word may also have been meant as
// a command.
exit_status unknown_procedure(const output_streams& streams, const client_options& options,
                              const std::string& word, bool first = false);
