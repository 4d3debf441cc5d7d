#include "commands/session.h"

#include <algorithm>

#include "base/text.h"
#include "commands/argument_files.h"
#include "commands/command.h"
#include "values/argument_check.h"
#include "wire/lookup.h"

static failure_report call(const client_options& options, uint32_t number, const std::string& name,
                           const byte_string& arguments, const call_idle* idle,
                           call_answer& answer) {
  const call_target target{options.host, options.port, options.timeout, idle};
  answer = call_procedure(target, number, arguments);
  const std::string line = call_explain(answer, target, name);
  if (line.empty()) return {};
  const bool unsent = answer.status == call_status::kTooLong;
  return {unsent ? kExitUsage : kExitNoAnswer, call_kind(answer), line,
          answer.status == call_status::kGivenUp};
}

bool session_call(const output_streams& streams, const client_options& options, uint32_t number,
                  const std::string& name, const byte_string& arguments, call_answer& answer,
                  exit_status* status) {
  const failure_report failure = call(options, number, name, arguments, nullptr, answer);
  if (!failure.line.empty()) {
    *status = fail(streams, failure);
    return false;
  }
  streams.notes->called = true;
  return true;
}

bool session_prepare(const output_streams& streams, const client_options& options,
                     const std::vector<std::string>& words, prepared_call& prepared,
                     exit_status* status, bool first) {
  prepared.procedure = lookup_name(words[0]);
  if (prepared.procedure == nullptr) {
    *status = unknown_procedure(streams, options, words[0], first);
    return false;
  }
  std::string error;
  std::vector<std::string> given(words.begin() + 1, words.end());
  if (!argument_files_read(*prepared.procedure, given, error)) {
    // The error is complete; it needs no usage line.
  } else if (!arguments_encode(*prepared.procedure, given, prepared.arguments, error)) {
    error += "; usage: " + arguments_usage(*prepared.procedure);
  } else if (!options.force && !arguments_check(*prepared.procedure, given, error)) {
    error += error.ends_with('?') ? " " : "; ";
    error += "'wificonf --force " + words[0] + " ...' sends it all the same";
  }
  if (error.empty()) return true;
  *status = fail(streams, kExitUsage, error);
  return false;
}

failure_report session_try(const client_options& options, const prepared_call& prepared,
                           decoded_reply& reply, const call_idle* idle) {
  const std::string name = lookup_display_name(*prepared.procedure);
  call_answer answer;
  failure_report failure =
      call(options, prepared.procedure->number, name, prepared.arguments, idle, answer);
  std::string error;
  if (!failure.line.empty() || reply_decode(*prepared.procedure, answer.result, reply, error))
    return failure;
  return {
      kExitNoAnswer, "malformed_reply",
      name + ": the reply is malformed, " + error + "; compare the releases of daemon and client"};
}

bool session_ask(const output_streams& streams, const client_options& options,
                 const prepared_call& prepared, decoded_reply& reply, exit_status* status) {
  const failure_report failure = session_try(options, prepared, reply);
  if (!failure.line.empty()) {
    *status = fail(streams, failure);
    return false;
  }
  streams.notes->called = true;
  return true;
}

int session_first_bss(const prepared_call& prepared) {
  constexpr uint32_t kFirstOf5GHz = 9;
  unread_bytes unread = prepared.arguments;
  uint32_t index = 0;
  return xdr_get_word(unread, &index) && index >= kFirstOf5GHz ? kFirstOf5GHz : 1;
}

exit_status unknown_procedure(const output_streams& streams, const client_options& options,
                              const std::string& word, bool first) {
  std::vector<const char*> commands;
  for (const command_row* command : options.commands)
    commands.push_back(command->name);
  const bool is_command = std::find(commands.begin(), commands.end(), word) != commands.end();
  if (!first) commands.clear();
  const std::vector<std::string> near = lookup_near(word, commands);
  std::string line = "no procedure " + text_quote(word);
  if (!first && is_command) line += " (a command: 'wificonf " + word + " --help' tells of it)";
  if (near.empty()) return fail(streams, kExitUsage, line + "; 'wificonf list' has all");
  line += "; did you mean ";
  for (size_t i = 0; i < near.size(); ++i) {
    const procedure_row* procedure = lookup_name(near[i]);
    line += i == 0 ? "" : i + 1 == near.size() ? " or " : ", ";
    line += near[i] + (procedure != nullptr && procedure->inert ? " (does nothing)" : "");
  }
  return fail(streams, kExitUsage, line + "?");
}
