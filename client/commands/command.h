// The commands. Each has its row beside its function, in the file of its name. Help, completion
// and "did you mean" derive from the rows.
#pragma once

#include <span>
#include <string>

#include "base/exit_status.h"

struct client_options;
struct output_streams;

// Words offered when completing a command line.
struct command_offer {
  // Where they are offered: "0", "1": first or second word after the command; "*": any other
  // word; "--sort": after that option. For a command that calls a procedure, "0" is the
  // procedure and "*" comes after its arguments.
  const char* at;
  const char* words;                // separated by blanks
  std::string (*list)() = nullptr;  // used instead of `words`
  bool procedures = false;          // procedure names too
};

struct command_row {
  const char* name;
  std::span<const char* const> usages;  // after "wificonf"
  const char* meaning;
  std::span<const command_offer> offers;
  // Options whose value has no words to offer. If the command calls a procedure, they may
  // follow any word.
  const char* valued = "";
  bool calls_procedure = false;  // PROCEDURE ARGUMENT... follow
  bool has_json = true;          // --json changes the output, or it is always JSON
  exit_status (*run)(const output_streams& streams, const client_options& options);
};

extern const command_row kPingCommand, kListCommand, kDescribeCommand, kSchemaCommand;
extern const command_row kDumpCommand, kWatchCommand, kTopCommand, kCompletionCommand;

// All commands, in the order of the help.
std::span<const command_row* const> command_all();
