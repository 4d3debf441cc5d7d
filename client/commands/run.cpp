#include "commands/run.h"

#include <algorithm>
#include <cstring>

#include "base/text.h"
#include "commands/command.h"
#include "commands/help.h"
#include "commands/procedure.h"
#include "commands/session.h"
#include "show/describe.h"
#include "wire/lookup.h"

static const command_row* find_command(std::string_view name) {
  for (const command_row* command : command_all())
    if (name == command->name) return command;
  return nullptr;
}

static exit_status run_command(const output_streams& streams, const client_options& options,
                               const command_row& chosen) {
  const char* unused = options.raw                        ? "--raw"
                       : options.json && !chosen.has_json ? "--json"
                                                          : nullptr;
  if (unused != nullptr)
    return fail(streams, kExitUsage, text_format("%s has no %s", chosen.name, unused));
  return chosen.run(streams, options);
}

// Handles "PROCEDURE --help" and "COMMAND --help". False for other words.
static bool show_help(const output_streams& streams, const std::vector<std::string>& words) {
  if (words.size() != 2 || (words[1] != "--help" && words[1] != "-h")) return false;
  const procedure_row* procedure = lookup_procedure(words[0]);
  const command_row* chosen = find_command(words[0]);
  if (procedure != nullptr)
    print(streams, describe_procedure(*procedure));
  else if (chosen != nullptr)
    print(streams, help_of(*chosen));
  return procedure != nullptr || chosen != nullptr;
}

static exit_status run_words(const output_streams& streams, const client_options& options) {
  const std::string& word = options.words[0];
  if (show_help(streams, options.words)) return kExitDone;
  const command_row* chosen = find_command(word);
  if (chosen != nullptr) return run_command(streams, options, *chosen);
  return lookup_is_number(word) ? procedure_by_number(streams, options)
                                : procedure_by_name(streams, options);
}

exit_status run(const std::vector<std::string>& arguments, FILE* out, FILE* err) {
  output_notes notes{};
  client_options options;
  options.commands = command_all();
  std::string error;
  exit_status status = kExitDone;
  const options_outcome outcome = options_parse(arguments, options, error);
  output_streams streams{out, err, &notes, options.json};
  switch (outcome) {
    case options_outcome::kHelp:
      print(streams, help_text(options.commands));
      break;
    case options_outcome::kVersion:
      print(streams, "wificonf " WIFICONF_VERSION "\n");
      break;
    case options_outcome::kError:
      status = fail(streams, kExitUsage, error + "; 'wificonf --help' tells how");
      break;
    case options_outcome::kRun:
      status = run_words(streams, options);
      break;
  }
  print_flush(streams);
  if (notes.error_number == 0) return status;
  return print_note(streams, kExitNoAnswer,
                    std::string("cannot write the output: ") + strerror(notes.error_number) +
                        (notes.called ? "; the call was made all the same" : ""));
}
