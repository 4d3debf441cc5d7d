#include "run.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "args.h"
#include "arguments.h"
#include "call.h"
#include "describe.h"
#include "json.h"
#include "lookup.h"
#include "reply.h"
#include "text.h"

namespace {

struct Streams {
  FILE* out;
  FILE* err;
};

void print(const Streams& streams, const std::string& text) {
  fwrite(text.data(), 1, text.size(), streams.out);
}

ExitStatus fail(const Streams& streams, ExitStatus status, const std::string& line) {
  fprintf(streams.err, "wificonf: %s\n", line.c_str());
  return status;
}

// Columns of the terminal that `out` is, or 0.
size_t terminal_width(FILE* out) {
  int fd = fileno(out);
  if (fd < 0 || isatty(fd) == 0) return 0;
  winsize size{};
  bool known = ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

const char* code_meaning(int32_t code) {
  switch (code) {
    case 1:
      return ": written or found";
    case 2:
      return ": no change";
    case 3:
      return ": try again";
    default:
      return "";
  }
}

std::string payload_text(const Procedure& procedure, const Reply& reply) {
  switch (procedure.payload) {
    case Payload::INT:
      return std::to_string(reply.value) + "\n";
    case Payload::TEXT:
      return text_escape(reply.text) + "\n";
    case Payload::WORDS:
      return text_dump_words(reply.words);
    case Payload::IMAGE:
      return text_dump_bytes(reply.data);
    case Payload::CODE:
    case Payload::NONE:
      break;
  }
  if (reply.code == 0) return "ok\n";
  return text_format("ok (code %d%s)\n", reply.code, code_meaning(reply.code));
}

ExitStatus show_reply(const Streams& streams, const Options& options, const Procedure& procedure,
                      const Reply& reply) {
  std::string name = lookup_display_name(procedure);
  if (options.json) print(streams, json_reply(procedure, reply));
  if (reply.code < 0)
    return fail(streams, kExitFailureCode,
                text_format("%s: the daemon answered failure, code %d; see its standard error and "
                            "'wificonf describe %s'",
                            name.c_str(), reply.code, name.c_str()));
  if (options.json) return kExitDone;
  print(streams, payload_text(procedure, reply));
  // Standard output has the value alone, for scripts.
  bool has_value = procedure.payload != Payload::CODE && procedure.payload != Payload::NONE;
  if (has_value && reply.code > 0)
    fprintf(streams.err, "wificonf: %s: ok (code %d%s)\n", name.c_str(), reply.code,
            code_meaning(reply.code));
  return kExitDone;
}

// Calls; false when there is no result to look at, with *status what to exit
// with.
bool call(const Streams& streams, const Options& options, uint32_t number, const std::string& name,
          const Bytes& arguments, Answer& answer, ExitStatus* status) {
  Target target{options.host, options.port, options.timeout};
  answer = call_procedure(target, number, arguments);
  std::string line = call_explain(answer, target, name);
  if (line.empty()) return true;
  bool unsent = answer.status == CallStatus::kTooLong;
  *status = fail(streams, unsent ? kExitUsage : kExitNoAnswer, line);
  return false;
}

ExitStatus malformed(const Streams& streams, const std::string& name, const std::string& why) {
  return fail(
      streams, kExitNoAnswer,
      name + ": the reply is malformed, " + why + "; compare the releases of daemon and client");
}

ExitStatus run_procedure(const Streams& streams, const Options& options,
                         const Procedure& procedure) {
  std::vector<std::string> given(options.words.begin() + 1, options.words.end());
  Bytes arguments;
  std::string error;
  if (!arguments_encode(procedure, given, arguments, error)) {
    return fail(streams, kExitUsage, error + "; usage: " + arguments_usage(procedure));
  }
  Answer answer;
  ExitStatus status = kExitDone;
  std::string name = lookup_display_name(procedure);
  if (!call(streams, options, procedure.number, name, arguments, answer, &status)) return status;
  Reply reply;
  if (!reply_decode(procedure, answer.result, reply, error)) return malformed(streams, name, error);
  return show_reply(streams, options, procedure, reply);
}

ExitStatus run_number(const Streams& streams, const Options& options) {
  uint32_t number = 0;
  const std::string& word = options.words[0];
  if (!lookup_parse_number(word, &number))
    return fail(streams, kExitUsage, text_quote(word) + " is no procedure number");
  if (options.words.size() > 1) {
    const Procedure* known = lookup_number(number);
    std::string hint =
        known == nullptr ? "" : text_format("; call %s", arguments_usage(*known).c_str());
    return fail(streams, kExitUsage, "a procedure number takes no arguments" + hint);
  }
  Answer answer;
  ExitStatus status = kExitDone;
  std::string name = "procedure " + lookup_display_number(number);
  if (!call(streams, options, number, name, {}, answer, &status)) return status;
  std::string_view bytes(reinterpret_cast<const char*>(answer.result.data()), answer.result.size());
  if (options.json)
    print(streams, json_raw(number, bytes));
  else
    print(streams, bytes.empty() ? "ok (empty result)\n" : text_dump_bytes(bytes));
  return kExitDone;
}

ExitStatus run_ping(const Streams& streams, const Options& options) {
  if (options.words.size() > 1) return fail(streams, kExitUsage, "ping takes no arguments");
  Answer answer;
  ExitStatus status = kExitDone;
  if (!call(streams, options, 0, "ping", {}, answer, &status)) return status;
  if (!answer.result.empty())
    return malformed(streams, "ping", "it has a result where none belongs");
  if (options.json)
    print(streams, json_ping(answer.seconds));
  else
    print(streams,
          text_format("%s port %u answered in %.3f ms\n", text_escape(options.host).c_str(),
                      options.port, answer.seconds * 1000));
  return kExitDone;
}

ExitStatus run_list(const Streams& streams, const Options& options) {
  if (options.words.size() > 2)
    return fail(streams, kExitUsage, "list takes one PATTERN at most; quote it for the shell");
  std::string pattern = options.words.size() == 2 ? options.words[1] : "";
  std::string text = describe_list(pattern, terminal_width(streams.out));
  if (text.empty())
    return fail(streams, kExitUsage,
                "no procedure matches " + text_quote(pattern) + "; 'wificonf list' has all");
  print(streams, options.json ? json_list(pattern) : text);
  return kExitDone;
}

ExitStatus unknown_procedure(const Streams& streams, const std::string& word) {
  std::vector<std::string> near = lookup_near(word);
  std::string line = "no procedure " + text_quote(word);
  if (near.empty()) return fail(streams, kExitUsage, line + "; 'wificonf list' has all");
  line += "; did you mean " + near[0];
  for (size_t i = 1; i < near.size(); i++)
    line += (i + 1 == near.size() ? " or " : ", ") + near[i];
  return fail(streams, kExitUsage, line + "?");
}

ExitStatus run_describe(const Streams& streams, const Options& options) {
  if (options.words.size() != 2)
    return fail(streams, kExitUsage, "describe takes one PROCEDURE; 'wificonf list' has all");
  const std::string& word = options.words[1];
  const Procedure* procedure = lookup_procedure(word);
  if (procedure == nullptr) return unknown_procedure(streams, word);
  print(streams, options.json ? json_describe(*procedure) : describe_procedure(*procedure));
  return kExitDone;
}

ExitStatus run_words(const Streams& streams, const Options& options) {
  const std::string& word = options.words[0];
  if (word == "ping") return run_ping(streams, options);
  if (word == "list") return run_list(streams, options);
  if (word == "describe") return run_describe(streams, options);
  if (lookup_is_number(word)) return run_number(streams, options);
  const Procedure* procedure = lookup_name(word);
  if (procedure == nullptr) return unknown_procedure(streams, word);
  return run_procedure(streams, options, *procedure);
}

}  // namespace

ExitStatus run(const std::vector<std::string>& arguments, FILE* out, FILE* err) {
  Streams streams{out, err};
  Options options;
  std::string error;
  ExitStatus status = kExitDone;
  switch (args_parse(arguments, options, error)) {
    case ArgsOutcome::kHelp:
      print(streams, args_help());
      break;
    case ArgsOutcome::kVersion:
      print(streams, "wificonf " WIFICONF_VERSION "\n");
      break;
    case ArgsOutcome::kError:
      return fail(streams, kExitUsage, error + "; 'wificonf --help' tells how");
    case ArgsOutcome::kRun:
      status = run_words(streams, options);
      break;
  }
  if (fflush(out) == 0 && ferror(out) == 0) return status;
  return fail(streams, kExitNoAnswer, "cannot write the output");
}
