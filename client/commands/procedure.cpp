#include "commands/procedure.h"

#include "base/text.h"
#include "show/json.h"
#include "show/record.h"
#include "values/argument_check.h"
#include "values/payload.h"
#include "wire/lookup.h"

static constexpr int32_t kTryAgain = 3;  // from getters whose result is a record

static const char* code_meaning(int32_t code) {
  switch (code) {
    case 1:
      return ": written or found";
    case 2:
      return ": no change";
    default:
      return "";
  }
}

static std::string payload_text(const procedure_row& procedure, const decoded_reply& reply,
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

// Reported on standard error: scripts expect the value alone on standard output.
static exit_status inert_status(const output_streams& streams, const client_options& options,
                                const procedure_row& procedure) {
  if (!procedure.inert || procedure.answer_is_all || options.inert_ok) return kExitDone;
  const std::string name = lookup_display_name(procedure);
  return print_note(streams, kExitInert,
                    name +
                        ": the daemon accepts this and deliberately does nothing; see 'wificonf "
                        "describe " +
                        name + "'");
}

static exit_status show_reply(const output_streams& streams, const client_options& options,
                              const prepared_call& prepared, const decoded_reply& reply) {
  const procedure_row& procedure = *prepared.procedure;
  std::string name = lookup_display_name(procedure);
  if (options.json) print(streams, json_reply(procedure, reply));
  if (payload_failed(procedure, reply.code))
    return print_note(
        streams, kExitFailureCode,
        text_format("%s: the daemon answered failure, code %d; its standard error, on the "
                    "gateway, says why, and 'wificonf describe %s' what it takes",
                    name.c_str(), reply.code, name.c_str()));
  bool has_value =
      procedure.payload != payload_kind::CODE && procedure.payload != payload_kind::NONE;
  if (reply.code == kTryAgain && payload_find(procedure) != nullptr)
    return print_note(streams, kExitNotReady,
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

static void show_bytes(const output_streams& streams, const client_options& options,
                       uint32_t number, const byte_string& result) {
  std::string_view bytes(reinterpret_cast<const char*>(result.data()), result.size());
  if (options.json)
    print(streams, json_raw(number, bytes));
  else
    print(streams, bytes.empty() ? "ok (empty result)\n" : text_dump_bytes(bytes));
}

exit_status procedure_by_name(const output_streams& streams, const client_options& options) {
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

exit_status procedure_by_number(const output_streams& streams, const client_options& options) {
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
