#include "watch.h"

#include "json.h"
#include "lookup.h"
#include "moment.h"
#include "payload.h"
#include "screen.h"
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

// The whole screen, cleared before.
std::string screen_of(const output_streams& streams, const procedure_row& procedure, double every,
                      const std::string& text) {
  const std::string title =
      text_format("%s, every %g s, %s\n\n", lookup_display_name(procedure).c_str(), every,
                  moment_stamp().c_str());
  return "\033[H\033[2J" +
         screen_lines(title + text, screen_height(streams.out) - 1, terminal_width(streams.out));
}

// The answer, for the width of a terminal or, with 0, in lines.
std::string shown(const procedure_row& procedure, size_t width, const sample& before,
                  const sample& current) {
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

// False when there is no answer: why not is in `problem` if it is for the screen, and
// told already if it is not.
bool ask(const output_streams& streams, const client_options& options,
         const prepared_call& prepared, bool on_screen, decoded_reply& reply, std::string& problem,
         exit_status* status) {
  if (!on_screen) return session_ask(streams, options, prepared, reply, status);
  problem = session_try(options, prepared, reply);
  if (!problem.empty()) *status = kExitNoAnswer;
  return problem.empty();
}

// Returns the exit status that the one call alone would have had.
exit_status take_sample(const output_streams& streams, const client_options& options,
                        const prepared_call& prepared, double every, sample& before) {
  const procedure_row& procedure = *prepared.procedure;
  const bool redrawn = !options.json && screen_is(streams.out);
  const size_t width = redrawn ? terminal_width(streams.out) : 0;
  sample current = {{}, moment_now(), false};
  exit_status status = kExitDone;
  std::string text;
  const bool answered = ask(streams, options, prepared, width != 0, current.reply, text, &status);
  current.valid = answered && current.reply.code >= 0;
  if (answered)
    text = options.json ? json_sample(procedure, current.reply, moment_stamp())
                        : shown(procedure, width, before, current);
  else
    text = text.empty() ? "" : text_wrap(text, width, 0, 0) + "\n";
  print(streams, width != 0 ? screen_of(streams, procedure, every, text) : text);
  print_flush(streams);
  before = current;
  return answered && payload_failed(procedure, current.reply.code) ? kExitFailureCode : status;
}

bool take_force(std::vector<std::string>& words) {
  if (words.empty() || words[0] != "--force") return false;
  words.erase(words.begin());
  return true;
}

}  // namespace

exit_status run_watch(const output_streams& streams, const client_options& options) {
  std::vector<std::string> words(options.words.begin() + 1, options.words.end());
  repeat_settings settings;
  std::string error;
  if (!settings_take(words, settings, error)) return fail(streams, kExitUsage, error);
  const bool forced = take_force(words);
  if (!settings_take(words, settings, error)) return fail(streams, kExitUsage, error);
  if (words.empty())
    return fail(streams, kExitUsage,
                "watch takes [--every TIME] [--count N] [--force] PROCEDURE ARGUMENT...");
  prepared_call prepared;
  exit_status status = kExitDone;
  if (!session_prepare(streams, words, prepared, &status)) return status;
  if (!forced && !table_reads(*prepared.procedure))
    return fail(streams, kExitUsage,
                lookup_display_name(*prepared.procedure) +
                    " is no getter: each call would act again; 'watch --force' does it");
  sample before = {{}, 0, false};
  double next = moment_now();
  for (unsigned long i = 0; settings.count == 0 || i < settings.count; i++) {
    if (i != 0) {
      next = moment_next(next, settings.every);
      moment_sleep_until(next);
    }
    status = take_sample(streams, options, prepared, settings.every, before);
  }
  return status;
}
