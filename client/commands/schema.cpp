// "wificonf schema": JSON Schemas of --json output and of arguments.
#include "show/schema.h"

#include "commands/command.h"
#include "commands/session.h"
#include "wire/lookup.h"

static exit_status run_schema(const output_streams& streams, const client_options& options) {
  const std::vector<std::string>& words = options.words;
  const bool arguments = words.size() == 3 && words[1] == "--arguments";
  if (words.back() == "--arguments" || (!arguments && words.size() != 2))
    return fail(streams, kExitUsage,
                "schema takes [--arguments] PROCEDURE, error or top; 'wificonf list' has all "
                "procedures");
  const std::string& word = words.back();
  const procedure_row* procedure = lookup_procedure(word);
  if (procedure != nullptr)
    print(streams, arguments ? schema_of_arguments(*procedure) : schema_of(*procedure));
  else if (arguments || (word != "error" && word != "top"))
    return unknown_procedure(streams, options, word);
  else
    print(streams, word == "error" ? schema_of_error() : schema_of_top());
  return kExitDone;
}

static constexpr const char* kSchemaUsages[] = {"schema PROCEDURE|error|top",
                                                "schema --arguments PROCEDURE"};
static constexpr command_offer kSchemaOffers[] = {{"0", "error top --arguments", nullptr, true},
                                                  {"1", "", nullptr, true}};

const command_row kSchemaCommand = {
    .name = "schema",
    .usages = kSchemaUsages,
    .meaning =
        "JSON Schema of what --json prints of its result, of a failure, or of top; with "
        "--arguments of the procedure's arguments",
    .offers = kSchemaOffers,
    .run = run_schema};
