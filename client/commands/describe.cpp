// "wificonf describe": everything about one procedure.
#include "show/describe.h"

#include "commands/command.h"
#include "commands/session.h"
#include "show/json.h"
#include "wire/lookup.h"

static exit_status run_describe(const output_streams& streams, const client_options& options) {
  if (options.words.size() != 2)
    return fail(streams, kExitUsage, "describe takes one PROCEDURE; 'wificonf list' has all");
  const std::string& word = options.words[1];
  const procedure_row* procedure = lookup_procedure(word);
  if (procedure == nullptr) return unknown_procedure(streams, options, word);
  print(streams, options.json ? json_describe(*procedure) : describe_procedure(*procedure));
  return kExitDone;
}

static constexpr const char* kDescribeUsages[] = {"[--json] describe PROCEDURE"};
static constexpr command_offer kDescribeOffers[] = {{"0", "", nullptr, true}};

const command_row kDescribeCommand = {
    .name = "describe",
    .usages = kDescribeUsages,
    .meaning = "its arguments, its result, what it does, what to call first, an example",
    .offers = kDescribeOffers,
    .run = run_describe};
