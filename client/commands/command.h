// The commands: what may stand where a procedure does. The row of each is beside its function,
// in the file of its name. Help, completion and the search for what was meant derive from the rows.
#pragma once

#include <span>
#include <string>

#include "base/exit_status.h"

struct client_options;
struct output_streams;

// Words that complete a command line.
struct command_offer {
  // "0", "1": the first or second word after the command; "*": any other; "--sort": after that
  // option. Of a command that calls a procedure, "0" is the procedure and "*" follows its
  // arguments.
  const char* at;
  const char* words;                // with blanks between
  std::string (*list)() = nullptr;  // the words instead, of a table
  bool procedures = false;          // names of procedures too
};

struct command_row {
  const char* name;
  std::span<const char* const> usages;  // after "wificonf"
  const char* meaning;
  std::span<const command_offer> offers;
  // Options that take a value of which no words are offered; those of a command that calls a
  // procedure are so after every word.
  const char* valued = "";
  bool calls_procedure = false;  // PROCEDURE ARGUMENT... follow
  bool has_json = true;          // --json changes what is printed, or it is JSON anyway
  exit_status (*run)(const output_streams& streams, const client_options& options);
};

extern const command_row kPingCommand, kListCommand, kDescribeCommand, kSchemaCommand;
extern const command_row kDumpCommand, kWatchCommand, kTopCommand, kCompletionCommand;

// All, in the order of the help.
std::span<const command_row* const> command_all();
