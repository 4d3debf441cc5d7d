#include "watch.h"

#include "json.h"
#include "lookup.h"
#include "moment.h"
#include "payload.h"
#include "settings.h"
#include "show.h"
#include "text.h"

namespace {

// What is kept from one answer to the next.
struct sample {
  decoded_reply reply;
  double taken;
  bool valid;
};

std::string plain_value(const procedure_row& procedure, const decoded_reply& reply) {
  if (reply.code < 0) return text_format("failed, code %d", reply.code);
  if (procedure.payload == payload_kind::INT) return std::to_string(reply.value);
  if (procedure.payload == payload_kind::TEXT) return text_escape(reply.text);
  return text_format("code %d", reply.code);
}

std::string shown(const output_streams& streams, const procedure_row& procedure,
                  const sample& before, const sample& current) {
  const size_t width = terminal_width(streams.out);
  const payload_layout* layout = payload_find(procedure);
  const earlier_record earlier = {before.reply.data, current.taken - before.taken};
  const earlier_record* then = before.valid ? &earlier : nullptr;
  if (layout == nullptr || current.reply.code < 0) {
    const std::string value = plain_value(procedure, current.reply) + "\n";
    return width != 0 ? value : moment_stamp() + " " + value;
  }
  return width != 0 ? show_record(*layout, current.reply.data, width, then)
                    : show_lines(*layout, current.reply.data, moment_stamp(), then);
}

// Returns the exit status that the one call alone would have had.
exit_status take_sample(const output_streams& streams, const client_options& options,
                        const prepared_call& prepared, sample& before) {
  sample current = {{}, moment_now(), false};
  exit_status status = kExitDone;
  const bool answered = session_ask(streams, options, prepared, current.reply, &status);
  current.valid = answered && current.reply.code >= 0;
  if (answered && options.json)
    print(streams, json_reply(*prepared.procedure, current.reply));
  else if (answered)
    print(streams, shown(streams, *prepared.procedure, before, current));
  fflush(streams.out);
  before = current;
  return answered && current.reply.code < 0 ? kExitFailureCode : status;
}

}  // namespace

exit_status run_watch(const output_streams& streams, const client_options& options) {
  std::vector<std::string> words(options.words.begin() + 1, options.words.end());
  repeat_settings settings;
  std::string error;
  if (!settings_take(words, settings, error)) return fail(streams, kExitUsage, error);
  if (words.empty())
    return fail(streams, kExitUsage,
                "watch takes PROCEDURE ARGUMENT... [--every TIME] [--count N]");
  prepared_call prepared;
  exit_status status = kExitDone;
  if (!session_prepare(streams, words, prepared, &status)) return status;
  const bool redraw = terminal_width(streams.out) != 0 && !options.json;
  const std::string title = lookup_display_name(*prepared.procedure);
  sample before = {{}, 0, false};
  double next = moment_now();
  for (unsigned long i = 0; settings.count == 0 || i < settings.count; i++) {
    if (i != 0) moment_sleep_until(next);
    next += settings.every;
    if (redraw)
      print(streams, text_format("\033[H\033[2J%s, every %g s, %s\n\n", title.c_str(),
                                 settings.every, moment_stamp().c_str()));
    status = take_sample(streams, options, prepared, before);
  }
  return status;
}
