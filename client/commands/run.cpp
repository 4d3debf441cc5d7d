#include "commands/run.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/moment.h"
#include "base/text.h"
#include "commands/completion.h"
#include "commands/dump.h"
#include "commands/help.h"
#include "commands/list.h"
#include "commands/session.h"
#include "commands/top.h"
#include "commands/watch.h"
#include "show/describe.h"
#include "show/json.h"
#include "show/record.h"
#include "show/schema.h"
#include "values/arguments.h"
#include "values/payload.h"
#include "wire/lookup.h"

namespace {

constexpr int32_t kTryAgain = 3;  // of the getters whose result is a record
// "ping --wait": the longest, how long one try waits for its answer, and the pause between two.
constexpr double kWaitMax = 86400;
constexpr double kWaitTry = 0.5;
constexpr double kWaitPause = 0.02;

const char* code_meaning(int32_t code) {
  switch (code) {
    case 1:
      return ": written or found";
    case 2:
      return ": no change";
    default:
      return "";
  }
}

std::string payload_text(const procedure_row& procedure, const decoded_reply& reply,
                         const show_settings& settings) {
  switch (procedure.payload) {
    case payload_kind::INT:
      return show_number(procedure, reply.value) + "\n";
    case payload_kind::TEXT:
      return text_escape(reply.text) + "\n";
    case payload_kind::WORDS:
    case payload_kind::IMAGE:
      return show_record(*payload_find(procedure), reply.data, settings);
    case payload_kind::CODE:
    case payload_kind::NONE:
      break;
  }
  if (reply.code == 0) return "ok\n";
  return text_format("ok (code %d%s)\n", reply.code, code_meaning(reply.code));
}

// Told on standard error: standard output has the value alone, for scripts.
exit_status inert_status(const output_streams& streams, const client_options& options,
                         const procedure_row& procedure) {
  if (!procedure.inert || procedure.answer_is_all || options.inert_ok) return kExitDone;
  const std::string name = lookup_display_name(procedure);
  return note(streams, kExitInert,
              name +
                  ": the daemon accepts this and deliberately does nothing; see 'wificonf "
                  "describe " +
                  name + "'");
}

exit_status show_reply(const output_streams& streams, const client_options& options,
                       const prepared_call& prepared, const decoded_reply& reply) {
  const procedure_row& procedure = *prepared.procedure;
  std::string name = lookup_display_name(procedure);
  if (options.json) print(streams, json_reply(procedure, reply));
  if (payload_failed(procedure, reply.code))
    return note(streams, kExitFailureCode,
                text_format("%s: the daemon answered failure, code %d; its standard error, on the "
                            "gateway, says why, and 'wificonf describe %s' what it takes",
                            name.c_str(), reply.code, name.c_str()));
  bool has_value =
      procedure.payload != payload_kind::CODE && procedure.payload != payload_kind::NONE;
  if (reply.code == kTryAgain && payload_find(procedure) != nullptr)
    return note(streams, kExitNotReady,
                text_format("%s: there is no result yet, code %d: try again in a second",
                            name.c_str(), reply.code));
  if (options.json) return inert_status(streams, options, procedure);
  print(streams,
        payload_text(procedure, reply, {terminal_width(streams.out), session_first_bss(prepared)}));
  if (has_value && reply.code > 0)
    fprintf(streams.err, "wificonf: %s: ok (code %d%s)\n", name.c_str(), reply.code,
            code_meaning(reply.code));
  return inert_status(streams, options, procedure);
}

// A result as the bytes that came.
void show_bytes(const output_streams& streams, const client_options& options, uint32_t number,
                const byte_string& result) {
  std::string_view bytes(reinterpret_cast<const char*>(result.data()), result.size());
  if (options.json)
    print(streams, json_raw(number, bytes));
  else
    print(streams, bytes.empty() ? "ok (empty result)\n" : text_dump_bytes(bytes));
}

exit_status run_procedure(const output_streams& streams, const client_options& options) {
  prepared_call prepared;
  exit_status status = kExitDone;
  if (!session_prepare(streams, options, options.words, prepared, &status, true)) return status;
  const procedure_row& procedure = *prepared.procedure;
  if (options.raw) {
    call_answer answer;
    if (!session_call(streams, options, procedure.number, lookup_display_name(procedure),
                      prepared.arguments, answer, &status))
      return status;
    show_bytes(streams, options, procedure.number, answer.result);
    return inert_status(streams, options, procedure);
  }
  decoded_reply reply;
  if (!session_ask(streams, options, prepared, reply, &status)) return status;
  return show_reply(streams, options, prepared, reply);
}

exit_status run_number(const output_streams& streams, const client_options& options) {
  uint32_t number = 0;
  const std::string& word = options.words[0];
  if (!lookup_parse_number(word, &number))
    return fail(streams, kExitUsage,
                text_quote(word) +
                    " is no procedure number: they are 0 to 4294967295, also in hexadecimal as "
                    "0x5e; 'wificonf list' has those of the daemon");
  if (options.words.size() > 1) {
    const procedure_row* known = lookup_number(number);
    std::string hint =
        known == nullptr ? "" : text_format("; call %s", arguments_usage(*known).c_str());
    return fail(streams, kExitUsage, "a procedure number takes no arguments" + hint);
  }
  call_answer answer;
  exit_status status = kExitDone;
  const std::string name = "procedure " + word;
  if (!session_call(streams, options, number, name, {}, answer, &status)) return status;
  show_bytes(streams, options, number, answer.result);
  const procedure_row* known = lookup_number(number);
  return known == nullptr ? kExitDone : inert_status(streams, options, *known);
}

// The seconds of "ping --wait SECONDS", 0 without; false on other words.
bool read_wait(const std::vector<std::string>& words, double* seconds) {
  *seconds = 0;
  if (words.size() == 1) return true;
  if (words.size() != 3 || words[1] != "--wait") return false;
  char* end = nullptr;
  *seconds = strtod(words[2].c_str(), &end);
  return end != words[2].c_str() && *end == '\0' && *seconds > 0 && *seconds <= kWaitMax;
}

// Asks until something answers or the time is over. A ping may be sent again: it does nothing.
void wait_for_answer(const client_options& options, double seconds) {
  const double end = moment_now() + seconds;
  const call_target target{options.host, options.port, options.timeout};
  while (call_procedure(target, 0, {}).status != call_status::kAnswered && moment_now() < end)
    moment_sleep_until(moment_now() + kWaitPause);
}

exit_status run_ping(const output_streams& streams, const client_options& given) {
  client_options options = given;
  double wait = 0;
  if (!read_wait(options.words, &wait))
    return fail(streams, kExitUsage, "ping takes no arguments but --wait SECONDS, up to 86400");
  if (wait > 0) {
    options.timeout = std::min(options.timeout, kWaitTry);
    wait_for_answer(options, wait);
  }
  call_answer answer;
  exit_status status = kExitDone;
  if (!session_call(streams, options, 0, "ping", {}, answer, &status)) return status;
  if (!answer.result.empty())
    return fail(streams, kExitNoAnswer,
                "ping: the reply has a result where none belongs; is it the daemon that answers "
                "there?");
  if (options.json)
    print(streams, json_ping(answer.seconds));
  else
    print(streams,
          text_format("%s port %u answered in %.3f ms\n", text_escape(options.host).c_str(),
                      options.port, answer.seconds * 1000));
  return kExitDone;
}

exit_status run_describe(const output_streams& streams, const client_options& options) {
  if (options.words.size() != 2)
    return fail(streams, kExitUsage, "describe takes one PROCEDURE; 'wificonf list' has all");
  const std::string& word = options.words[1];
  const procedure_row* procedure = lookup_procedure(word);
  if (procedure == nullptr) return unknown_procedure(streams, word);
  print(streams, options.json ? json_describe(*procedure) : describe_procedure(*procedure));
  return kExitDone;
}

exit_status run_schema(const output_streams& streams, const client_options& options) {
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
    return unknown_procedure(streams, word);
  else
    print(streams, word == "error" ? schema_of_error() : schema_of_top());
  return kExitDone;
}

exit_status run_completion(const output_streams& streams, const client_options& options) {
  const std::string shell = options.words.size() == 2 ? options.words[1] : "";
  const std::string script = completion_script(shell);
  if (script.empty()) return fail(streams, kExitUsage, "completion takes bash or zsh");
  print(streams, script);
  return kExitDone;
}

// As lookup_commands() has them.
constexpr struct command {
  const char* name;
  exit_status (*run)(const output_streams& streams, const client_options& options);
  bool has_json;  // what --json changes, or is there anyway
} kCommands[] = {
    {"ping", run_ping, true},         {"list", run_list, true},
    {"describe", run_describe, true}, {"schema", run_schema, true},
    {"dump", run_dump, true},         {"watch", run_watch, true},
    {"top", run_top, true},           {"completion", run_completion, false},
};

exit_status run_command(const output_streams& streams, const client_options& options,
                        const command& chosen) {
  const char* unused = options.raw                        ? "--raw"
                       : options.json && !chosen.has_json ? "--json"
                                                          : nullptr;
  if (unused != nullptr)
    return fail(streams, kExitUsage, text_format("%s has no %s", chosen.name, unused));
  return chosen.run(streams, options);
}

// "PROCEDURE --help" and "COMMAND --help". False when the words are not that.
bool show_help(const output_streams& streams, const std::vector<std::string>& words) {
  if (words.size() != 2 || (words[1] != "--help" && words[1] != "-h")) return false;
  const procedure_row* procedure = lookup_procedure(words[0]);
  const std::string text =
      procedure != nullptr ? describe_procedure(*procedure) : help_of(words[0]);
  print(streams, text);
  return !text.empty();
}

exit_status run_words(const output_streams& streams, const client_options& options) {
  const std::string& word = options.words[0];
  if (show_help(streams, options.words)) return kExitDone;
  for (const command& chosen : kCommands) {
    if (word == chosen.name) return run_command(streams, options, chosen);
  }
  return lookup_is_number(word) ? run_number(streams, options) : run_procedure(streams, options);
}

}  // namespace

exit_status run(const std::vector<std::string>& arguments, FILE* out, FILE* err) {
  output_notes notes{};
  client_options options;
  std::string error;
  exit_status status = kExitDone;
  const args_outcome outcome = args_parse(arguments, options, error);
  output_streams streams{out, err, &notes, options.json};
  switch (outcome) {
    case args_outcome::kHelp:
      print(streams, help_text());
      break;
    case args_outcome::kVersion:
      print(streams, "wificonf " WIFICONF_VERSION "\n");
      break;
    case args_outcome::kError:
      status = fail(streams, kExitUsage, error + "; 'wificonf --help' tells how");
      break;
    case args_outcome::kRun:
      status = run_words(streams, options);
      break;
  }
  print_flush(streams);
  if (notes.error_number == 0) return status;
  return note(streams, kExitNoAnswer,
              std::string("cannot write the output: ") + strerror(notes.error_number) +
                  (notes.called ? "; the call was made all the same" : ""));
}
