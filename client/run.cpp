#include "run.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "args.h"
#include "arguments.h"
#include "call.h"
#include "describe.h"
#include "json.h"
#include "lookup.h"
#include "payload.h"
#include "reply.h"
#include "schema.h"
#include "show.h"
#include "text.h"

namespace {

struct output_streams {
  FILE* out;
  FILE* err;
};

void print(const output_streams& streams, const std::string& text) {
  fwrite(text.data(), 1, text.size(), streams.out);
}

exit_status fail(const output_streams& streams, exit_status status, const std::string& line) {
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

std::string payload_text(const procedure_row& procedure, const decoded_reply& reply, size_t width) {
  switch (procedure.payload) {
    case payload_kind::INT:
      return std::to_string(reply.value) + "\n";
    case payload_kind::TEXT:
      return text_escape(reply.text) + "\n";
    case payload_kind::WORDS:
    case payload_kind::IMAGE:
      return show_record(*payload_find(procedure), reply.data, width);
    case payload_kind::CODE:
    case payload_kind::NONE:
      break;
  }
  if (reply.code == 0) return "ok\n";
  return text_format("ok (code %d%s)\n", reply.code, code_meaning(reply.code));
}

exit_status show_reply(const output_streams& streams, const client_options& options,
                       const procedure_row& procedure, const decoded_reply& reply) {
  std::string name = lookup_display_name(procedure);
  if (options.json) print(streams, json_reply(procedure, reply));
  if (reply.code < 0)
    return fail(streams, kExitFailureCode,
                text_format("%s: the daemon answered failure, code %d; see its standard error and "
                            "'wificonf describe %s'",
                            name.c_str(), reply.code, name.c_str()));
  if (options.json) return kExitDone;
  print(streams, payload_text(procedure, reply, terminal_width(streams.out)));
  // Standard output has the value alone, for scripts.
  bool has_value =
      procedure.payload != payload_kind::CODE && procedure.payload != payload_kind::NONE;
  if (has_value && reply.code > 0)
    fprintf(streams.err, "wificonf: %s: ok (code %d%s)\n", name.c_str(), reply.code,
            code_meaning(reply.code));
  return kExitDone;
}

// Calls; false when there is no result to look at, with *status what to exit
// with.
bool call(const output_streams& streams, const client_options& options, uint32_t number,
          const std::string& name, const byte_string& arguments, call_answer& answer,
          exit_status* status) {
  call_target target{options.host, options.port, options.timeout};
  answer = call_procedure(target, number, arguments);
  std::string line = call_explain(answer, target, name);
  if (line.empty()) return true;
  bool unsent = answer.status == call_status::kTooLong;
  *status = fail(streams, unsent ? kExitUsage : kExitNoAnswer, line);
  return false;
}

exit_status malformed(const output_streams& streams, const std::string& name,
                      const std::string& why) {
  return fail(
      streams, kExitNoAnswer,
      name + ": the reply is malformed, " + why + "; compare the releases of daemon and client");
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

exit_status run_procedure(const output_streams& streams, const client_options& options,
                          const procedure_row& procedure) {
  std::vector<std::string> given(options.words.begin() + 1, options.words.end());
  byte_string arguments;
  std::string error;
  if (!arguments_encode(procedure, given, arguments, error)) {
    return fail(streams, kExitUsage, error + "; usage: " + arguments_usage(procedure));
  }
  call_answer answer;
  exit_status status = kExitDone;
  std::string name = lookup_display_name(procedure);
  if (!call(streams, options, procedure.number, name, arguments, answer, &status)) return status;
  if (options.raw) {
    show_bytes(streams, options, procedure.number, answer.result);
    return kExitDone;
  }
  decoded_reply reply;
  if (!reply_decode(procedure, answer.result, reply, error)) return malformed(streams, name, error);
  return show_reply(streams, options, procedure, reply);
}

exit_status run_number(const output_streams& streams, const client_options& options) {
  uint32_t number = 0;
  const std::string& word = options.words[0];
  if (!lookup_parse_number(word, &number))
    return fail(streams, kExitUsage, text_quote(word) + " is no procedure number");
  if (options.words.size() > 1) {
    const procedure_row* known = lookup_number(number);
    std::string hint =
        known == nullptr ? "" : text_format("; call %s", arguments_usage(*known).c_str());
    return fail(streams, kExitUsage, "a procedure number takes no arguments" + hint);
  }
  call_answer answer;
  exit_status status = kExitDone;
  std::string name = "procedure " + lookup_display_number(number);
  if (!call(streams, options, number, name, {}, answer, &status)) return status;
  show_bytes(streams, options, number, answer.result);
  return kExitDone;
}

exit_status run_ping(const output_streams& streams, const client_options& options) {
  if (options.words.size() > 1) return fail(streams, kExitUsage, "ping takes no arguments");
  call_answer answer;
  exit_status status = kExitDone;
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

exit_status run_list(const output_streams& streams, const client_options& options) {
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

exit_status unknown_procedure(const output_streams& streams, const std::string& word) {
  std::vector<std::string> near = lookup_near(word);
  std::string line = "no procedure " + text_quote(word);
  if (near.empty()) return fail(streams, kExitUsage, line + "; 'wificonf list' has all");
  line += "; did you mean " + near[0];
  for (size_t i = 1; i < near.size(); i++)
    line += (i + 1 == near.size() ? " or " : ", ") + near[i];
  return fail(streams, kExitUsage, line + "?");
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
  if (options.words.size() != 2)
    return fail(streams, kExitUsage, "schema takes one PROCEDURE; 'wificonf list' has all");
  const procedure_row* procedure = lookup_procedure(options.words[1]);
  if (procedure == nullptr) return unknown_procedure(streams, options.words[1]);
  print(streams, schema_of(*procedure));
  return kExitDone;
}

exit_status run_words(const output_streams& streams, const client_options& options) {
  const std::string& word = options.words[0];
  if (word == "ping") return run_ping(streams, options);
  if (word == "list") return run_list(streams, options);
  if (word == "describe") return run_describe(streams, options);
  if (word == "schema") return run_schema(streams, options);
  if (lookup_is_number(word)) return run_number(streams, options);
  const procedure_row* procedure = lookup_name(word);
  if (procedure == nullptr) return unknown_procedure(streams, word);
  return run_procedure(streams, options, *procedure);
}

}  // namespace

exit_status run(const std::vector<std::string>& arguments, FILE* out, FILE* err) {
  output_streams streams{out, err};
  client_options options;
  std::string error;
  exit_status status = kExitDone;
  switch (args_parse(arguments, options, error)) {
    case args_outcome::kHelp:
      print(streams, args_help());
      break;
    case args_outcome::kVersion:
      print(streams, "wificonf " WIFICONF_VERSION "\n");
      break;
    case args_outcome::kError:
      return fail(streams, kExitUsage, error + "; 'wificonf --help' tells how");
    case args_outcome::kRun:
      status = run_words(streams, options);
      break;
  }
  if (fflush(out) == 0 && ferror(out) == 0) return status;
  return fail(streams, kExitNoAnswer, "cannot write the output");
}
