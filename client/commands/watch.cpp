// "wificonf watch": repeats one call.
#include <cmath>

#include "base/moment.h"
#include "base/text.h"
#include "commands/command.h"
#include "commands/repeat.h"
#include "commands/session.h"
#include "show/json.h"
#include "show/live.h"
#include "show/record.h"
#include "show/screen.h"
#include "values/payload.h"
#include "wire/lookup.h"

namespace {

struct sample {
  decoded_reply reply;
  double taken;
  bool valid;
};

struct watching {
  const output_streams& streams;
  const client_options& options;
  const prepared_call& prepared;
  double every;
  bool redrawn;  // on a terminal
  sample before;
  std::string shown;  // below the title
  double asking_since;
  double drawn;
};

}  // namespace

static std::string plain_value(const procedure_row& procedure, const decoded_reply& reply) {
  if (reply.code < 0) return text_format("failed, code %d", reply.code);
  if (procedure.payload == payload_kind::INT) return show_number(procedure, reply.value);
  if (procedure.payload == payload_kind::TEXT) return text_escape(reply.text);
  return text_format("code %d", reply.code);
}

// The whole screen, starting with a clear.
static std::string screen_of(const output_streams& streams, const procedure_row& procedure,
                             double every, const std::string& text) {
  const std::string title =
      text_format("%s, every %g s, %s\n\n", lookup_display_name(procedure).c_str(), every,
                  moment_stamp().c_str());
  return "\033[H\033[2J" +
         screen_lines(title + text, screen_height(streams.out) - 1, terminal_width(streams.out));
}

// The answer as text for a terminal of `width` columns, or as lines if 0.
static std::string shown(const prepared_call& prepared, size_t width, const sample& before,
                         const sample& current) {
  const procedure_row& procedure = *prepared.procedure;
  const payload_layout* layout = payload_find(procedure);
  const earlier_record earlier = {before.reply.data, current.taken - before.taken};
  const earlier_record* then = before.valid ? &earlier : nullptr;
  if (layout == nullptr || current.reply.code < 0) {
    const std::string value = plain_value(procedure, current.reply) + "\n";
    return width != 0 ? value : moment_stamp() + " " + value;
  }
  const show_settings settings = {width, session_first_bss(prepared), then};
  return width != 0 ? show_record(*layout, current.reply.data, settings)
                    : show_lines(*layout, current.reply.data, moment_stamp(), settings);
}

static void draw(watching& state, const std::string& text) {
  print(state.streams, screen_of(state.streams, *state.prepared.procedure, state.every, text));
  print_flush(state.streams);
  state.drawn = moment_now();
}

// Called during a call without an answer; false gives the call up.
static bool watch_go_on(void* context) {
  watching& state = *static_cast<watching*>(context);
  if (live_read() == live_key::kQuit) return false;
  const double now = moment_now();
  const double waited = now - state.asking_since;
  if (waited < kLateSeconds || now - state.drawn < kLateSeconds) return true;
  const std::string age = state.shown.empty() ? ""
                                              : text_format("; what is shown is %.0f s old",
                                                            std::floor(now - state.before.taken));
  draw(state, text_format("waiting for an answer, %.0f s so far", std::floor(waited)) + age +
                  "\n\n" + state.shown);
  return true;
}

static std::string answer_text(const watching& state, size_t width, const sample& current) {
  const procedure_row& procedure = *state.prepared.procedure;
  if (state.options.json) return json_sample(procedure, current.reply, moment_stamp());
  return shown(state.prepared, width, state.before, current);
}

static void show_failure(watching& state, size_t width, const failure_report& failure) {
  if (state.redrawn) {
    state.shown = text_wrap(failure.line, width, 0, 0) + "\n";
    draw(state, state.shown);
    return;
  }
  if (state.options.json) print(state.streams, json_error(failure, moment_stamp()));
  print_note(state.streams, failure.status, failure.line);
}

static void show_answer(watching& state, size_t width, const sample& current) {
  state.shown = answer_text(state, width, current);
  if (state.redrawn)
    draw(state, state.shown);
  else
    print(state.streams, state.shown);
}

// False if the user quits; otherwise *status is that of this call alone.
static bool take_sample(watching& state, exit_status* status) {
  const size_t width = state.redrawn ? terminal_width(state.streams.out) : 0;
  const call_idle idle = {state.redrawn ? live_fd() : -1, watch_go_on, &state};
  state.asking_since = moment_now();
  sample current = {};
  const failure_report failure =
      session_try(state.options, state.prepared, current.reply, state.redrawn ? &idle : nullptr);
  if (failure.given_up) return false;
  const bool answered = failure.line.empty();
  current.taken = moment_now();
  current.valid = answered && current.reply.code >= 0;
  state.streams.notes->called = state.streams.notes->called || answered;
  if (answered)
    show_answer(state, width, current);
  else
    show_failure(state, width, failure);
  print_flush(state.streams);
  const bool failed = answered && payload_failed(*state.prepared.procedure, current.reply.code);
  *status = failed ? kExitFailureCode : failure.status;
  state.before = current;
  return true;
}

// False if the user quits.
static bool wait_for_next(const watching& state, double moment) {
  if (!state.redrawn) {
    moment_sleep_until(moment);
    return true;
  }
  while (true) {
    const live_key key = live_wait(moment);
    if (key == live_key::kNone) return true;
    if (key == live_key::kQuit) return false;
  }
}

static exit_status watch_until_quit(watching& state, unsigned long count) {
  exit_status status = kExitDone;
  double next = moment_now();
  for (unsigned long i = 0; count == 0 || i < count; ++i) {
    if (i != 0) {
      next = moment_next(next, state.every);
      if (!wait_for_next(state, next)) break;
    }
    if (!take_sample(state, &status)) break;
  }
  return status;
}

static bool take_force(std::vector<std::string>& words) {
  if (words.empty() || words[0] != "--force") return false;
  words.erase(words.begin());
  return true;
}

// Words: watch PROCEDURE ARGUMENT... [--every TIME] [--count N]. Redraws a terminal with what
// fits. Elsewhere every answer is printed as lines that start with the time. A failed call is
// reported and made again at its time. Returns after N calls, or never.
static exit_status run_watch(const output_streams& streams, const client_options& options) {
  std::vector<std::string> words(options.words.begin() + 1, options.words.end());
  repeat_settings settings;
  std::string error;
  if (!repeat_take(words, settings, error)) return fail(streams, kExitUsage, error);
  const bool forced = take_force(words);
  if (!repeat_take(words, settings, error)) return fail(streams, kExitUsage, error);
  if (words.empty())
    return fail(streams, kExitUsage,
                "watch takes [--every TIME] [--count N] [--force] PROCEDURE ARGUMENT...");
  prepared_call prepared;
  exit_status status = kExitDone;
  if (!session_prepare(streams, options, words, prepared, &status)) return status;
  if (!forced && !table_reads(*prepared.procedure))
    return fail(streams, kExitUsage,
                lookup_display_name(*prepared.procedure) +
                    " is no getter: each call would act again; 'watch --force' does it");
  watching state = {
      streams, options, prepared, settings.every, !options.json && screen_is(streams.out), {},
      "",      0,       0};
  if (state.redrawn) live_begin(streams, false);
  status = watch_until_quit(state, settings.count);
  if (state.redrawn) live_end();
  return status;
}

static constexpr const char* kWatchUsages[] = {
    "[OPTION...] watch [--every TIME] [--count N] [--force] PROCEDURE [ARGUMENT...]"};
static constexpr command_offer kWatchOffers[] = {{"0", "--every --count --force", nullptr, true},
                                                 {"*", "--every --count"}};

const command_row kWatchCommand = {
    .name = "watch",
    .usages = kWatchUsages,
    .meaning =
        "calls again and again, every second if not told otherwise; counters have their rates. "
        "TIME is 10ms to 24h, N how many calls; q quits. What is no getter takes --force",
    .offers = kWatchOffers,
    .valued = "--every --count",
    .calls_procedure = true,
    .run = run_watch};
