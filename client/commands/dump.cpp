#include "commands/dump.h"

#include <nlohmann/json.hpp>

#include "base/moment.h"
#include "base/text.h"
#include "commands/command.h"
#include "commands/session.h"
#include "show/json.h"
#include "values/redact.h"
#include "values/stations.h"
#include "wire/lookup.h"

using ordered_json = nlohmann::ordered_json;

static constexpr uint32_t kRowMax = 32;
static constexpr uint32_t kRadios[] = {1, 9};

namespace {

struct dump_state {
  const output_streams& streams;
  const client_options& options;
  exit_status status;
  bool redacted;
  redaction so_far;
};

struct dump_call {
  const procedure_row* procedure;
  std::vector<uint32_t> arguments;
};

}  // namespace

// Calls and stores the answer, or the failure code, in `place`. False if the daemon does not
// answer; *code is the return code.
static bool ask(dump_state& state, ordered_json& place, const dump_call& call, int32_t* code) {
  prepared_call prepared = {call.procedure, {}};
  for (const uint32_t word : call.arguments)
    xdr_put_word(prepared.arguments, word);
  decoded_reply reply;
  if (!session_ask(state.streams, state.options, prepared, reply, &state.status)) return false;
  *code = reply.code;
  ordered_json answer = json_result(*call.procedure, reply);
  answer.erase("procedure");
  answer.erase("number");
  if (state.redacted) redact(*call.procedure, answer, state.so_far);
  place[lookup_display_name(*call.procedure)] = answer;
  return true;
}

// The getters whose only argument is `index`; with "", those without arguments.
static std::vector<const procedure_row*> getters_by(std::string_view index) {
  std::vector<const procedure_row*> found;
  for (const procedure_row& procedure : table_procedures()) {
    const bool fits = index.empty()
                          ? procedure.members.count == 0
                          : procedure.members.count == 1 && procedure.members.at[0].name == index;
    if (fits && dump_is_safe(procedure)) found.push_back(&procedure);
  }
  return found;
}

static bool ask_all(dump_state& state, ordered_json& place, std::string_view index_name,
                    const std::vector<uint32_t>& arguments) {
  int32_t code = 0;
  for (const procedure_row* procedure : getters_by(index_name)) {
    if (!ask(state, place, {procedure, arguments}, &code)) return false;
  }
  return true;
}

// Counters of a BSS (type 0) or of a radio (type 1).
static bool ask_stats(dump_state& state, ordered_json& place, uint32_t index, uint32_t type) {
  int32_t code = 0;
  return ask(state, place, {lookup_name("wlan_get_stats"), {index, type}}, &code);
}

// The rows of a controller table, up to the first missing one.
static bool ask_rows(dump_state& state, ordered_json& place) {
  for (const procedure_row* procedure : getters_by("row")) {
    int32_t code = 0;
    for (uint32_t row = 1; row <= kRowMax && code >= 0; ++row) {
      if (!ask(state, place[std::to_string(row)], {procedure, {row}}, &code)) return false;
    }
  }
  return true;
}

static bool ask_everything(dump_state& state, ordered_json& dump) {
  bool answered = ask_all(state, dump["gateway"], "", {});
  for (const uint32_t radio : kRadios) {
    ordered_json& place = dump["radio"][std::to_string(radio)];
    answered =
        answered && ask_all(state, place, "radio", {radio}) && ask_stats(state, place, radio, 1);
  }
  for (uint32_t bss = 1; bss <= uint32_t{kBssMax}; ++bss) {
    ordered_json& place = dump["bss"][std::to_string(bss)];
    answered = answered && ask_all(state, place, "bss", {bss}) && ask_stats(state, place, bss, 0);
  }
  answered = answered && ask_all(state, dump["controller"], "instance", {1});
  return answered && ask_rows(state, dump["row"]);
}

bool dump_is_safe(const procedure_row& procedure) {
  return !procedure.inert && procedure.effect == asking::kReads;
}

// Words: dump [--redact]. Calls every side-effect-free getter for each radio, BSS and row.
// --redact keeps only values that the layouts mark as free, replaces addresses and names
// consistently, and counts unclassified values in "left_out".
static exit_status run_dump(const output_streams& streams, const client_options& options) {
  const bool redacted = options.words.size() == 2 && options.words[1] == "--redact";
  if (options.words.size() > 1 && !redacted)
    return fail(streams, kExitUsage, "dump takes --redact only");
  dump_state state = {streams, options, kExitDone, redacted, {}};
  ordered_json dump = {{"wificonf", WIFICONF_VERSION}, {"time", moment_stamp()}};
  if (!ask_everything(state, dump)) return state.status;
  if (redacted) dump["left_out"] = state.so_far.left_out;
  print(streams, dump.dump(2, ' ', true, ordered_json::error_handler_t::replace) + "\n");
  return kExitDone;
}

static constexpr const char* kDumpUsages[] = {"[OPTION...] dump [--redact]"};
static constexpr command_offer kDumpOffers[] = {{"0", "--redact"}};

const command_row kDumpCommand = {.name = "dump",
                                  .usages = kDumpUsages,
                                  .meaning =
                                      "all that the gateway tells of itself, as JSON; --redact "
                                      "leaves out secrets and gives addresses and names others",
                                  .offers = kDumpOffers,
                                  .run = run_dump};
