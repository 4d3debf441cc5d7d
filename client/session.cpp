#include "session.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "arguments.h"
#include "lookup.h"
#include "text.h"

// The stream keeps that a write failed, not why.
static void note_error(const output_streams& streams, bool written) {
  const int error_number = errno;
  if (!written && streams.notes->error_number == 0) streams.notes->error_number = error_number;
}

void print(const output_streams& streams, const std::string& text) {
  note_error(streams, fwrite(text.data(), 1, text.size(), streams.out) == text.size());
}

void print_flush(const output_streams& streams) {
  note_error(streams, fflush(streams.out) == 0);
}

exit_status fail(const output_streams& streams, exit_status status, const std::string& line) {
  const std::string text = text_wrap("wificonf: " + line, terminal_width(streams.err), 0, 10);
  fprintf(streams.err, "%s\n", text.c_str());
  return status;
}

size_t terminal_width(FILE* out) {
  int fd = fileno(out);
  if (fd < 0 || isatty(fd) == 0) return 0;
  winsize size{};
  bool known = ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

bool session_call(const output_streams& streams, const client_options& options, uint32_t number,
                  const std::string& name, const byte_string& arguments, call_answer& answer,
                  exit_status* status) {
  call_target target{options.host, options.port, options.timeout};
  answer = call_procedure(target, number, arguments);
  std::string line = call_explain(answer, target, name);
  streams.notes->called = streams.notes->called || line.empty();
  if (line.empty()) return true;
  bool unsent = answer.status == call_status::kTooLong;
  *status = fail(streams, unsent ? kExitUsage : kExitNoAnswer, line);
  return false;
}

bool session_prepare(const output_streams& streams, const std::vector<std::string>& words,
                     prepared_call& prepared, exit_status* status, bool first) {
  prepared.procedure = lookup_name(words[0]);
  if (prepared.procedure == nullptr) {
    *status = unknown_procedure(streams, words[0], first);
    return false;
  }
  std::string error;
  std::vector<std::string> given(words.begin() + 1, words.end());
  if (arguments_encode(*prepared.procedure, given, prepared.arguments, error)) return true;
  *status = fail(streams, kExitUsage, error + "; usage: " + arguments_usage(*prepared.procedure));
  return false;
}

// Why the answer's result cannot be decoded; "" when it can.
static std::string decode(const prepared_call& prepared, const call_answer& answer,
                          decoded_reply& reply) {
  std::string error;
  if (reply_decode(*prepared.procedure, answer.result, reply, error)) return "";
  return lookup_display_name(*prepared.procedure) + ": the reply is malformed, " + error +
         "; compare the releases of daemon and client";
}

bool session_ask(const output_streams& streams, const client_options& options,
                 const prepared_call& prepared, decoded_reply& reply, exit_status* status) {
  call_answer answer;
  if (!session_call(streams, options, prepared.procedure->number,
                    lookup_display_name(*prepared.procedure), prepared.arguments, answer, status))
    return false;
  const std::string line = decode(prepared, answer, reply);
  if (line.empty()) return true;
  *status = fail(streams, kExitNoAnswer, line);
  return false;
}

std::string session_try(const client_options& options, const prepared_call& prepared,
                        decoded_reply& reply) {
  const call_target target{options.host, options.port, options.timeout};
  const call_answer answer = call_procedure(target, prepared.procedure->number, prepared.arguments);
  const std::string line = call_explain(answer, target, lookup_display_name(*prepared.procedure));
  return line.empty() ? decode(prepared, answer, reply) : line;
}

exit_status unknown_procedure(const output_streams& streams, const std::string& word, bool first) {
  std::vector<std::string> near = lookup_near(word, first);
  std::string line = "no procedure " + text_quote(word);
  if (!first && lookup_is_command(word))
    line += " (a command: 'wificonf " + word + " --help' tells of it)";
  if (near.empty()) return fail(streams, kExitUsage, line + "; 'wificonf list' has all");
  line += "; did you mean " + near[0];
  for (size_t i = 1; i < near.size(); i++)
    line += (i + 1 == near.size() ? " or " : ", ") + near[i];
  return fail(streams, kExitUsage, line + "?");
}
