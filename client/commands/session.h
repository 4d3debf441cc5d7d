// What every command needs: calls that explain themselves when they fail.
#pragma once

#include <string>

#include "commands/options.h"
#include "show/output.h"
#include "wire/call.h"
#include "wire/reply.h"
#include "wire/table.h"

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
failure_report session_try(const client_options& options, const prepared_call& prepared,
                           decoded_reply& reply, const call_idle* idle = nullptr);

// The number of the first BSS, 1 or 9, of the radio that a call is about.
int session_first_bss(const prepared_call& prepared);

// "no procedure 'x'; did you mean ...?" `first`: a command may stand there too.
exit_status unknown_procedure(const output_streams& streams, const client_options& options,
                              const std::string& word, bool first = false);
