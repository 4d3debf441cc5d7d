// "wificonf top": the stations of all BSSs, busiest first.
#include <algorithm>
#include <cmath>

#include "base/moment.h"
#include "base/text.h"
#include "commands/command.h"
#include "commands/session.h"
#include "commands/top_options.h"
#include "show/columns.h"
#include "show/live.h"
#include "show/record.h"
#include "show/screen.h"
#include "values/payload.h"
#include "values/stations.h"

namespace {

struct top_view {
  const output_streams& streams;
  const client_options& options;
  const top_options& settings;
  top_sample shown;        // the last complete one
  failure_report failure;  // of the last attempt
  size_t first;            // index of the first station on the screen
  int asking;              // BSS being asked; 0: none
  double asking_since;     // start of the whole sample
  double drawn;
};

}  // namespace

static constexpr size_t kTableHead = 2;  // lines: headings and units
// On fewer lines only the title and the stations are shown.
static constexpr size_t kHeightOfAll = 6;

// Bytes can take ten digits, too wide for a terminal of 80 columns.
static std::string kilobytes(const char* name, const top_station& station) {
  const uint64_t bytes = payload_unsigned(stations_field(name), station.record);
  return text_format("%.0f", static_cast<double>(bytes) / 1000);
}

static std::string rate_text(double rate) {
  return rate < 0 ? "-" : text_format("%.0f", rate);
}

static std::vector<std::string> cells_of(const top_station& station) {
  const auto cell = [&](const char* name) {
    return show_cell(stations_field(name), station.record);
  };
  const bool btm = payload_unsigned(stations_field("btm"), station.record) != 0;
  return {std::to_string(station.bss),
          cell("mac_address"),
          cell("rssi"),
          cell("downlink_rate"),
          cell("uplink_rate"),
          rate_text(station.sent_rate),
          rate_text(station.received_rate),
          kilobytes("bytes_sent", station),
          kilobytes("bytes_received", station),
          btm ? "yes" : "-"};
}

static std::string table_of(const top_sample& sample, size_t width) {
  // On a narrow terminal the highest rank is dropped first.
  static constexpr text_column kColumns[] = {
      {"BSS", true, "", 1},        {"STATION", false},        {"RSSI", true, "dBm", 2},
      {"DOWN", true, "Mbit/s", 5}, {"UP", true, "Mbit/s", 6}, {"OUT", true, "B/s", 3},
      {"IN", true, "B/s", 4},      {"SENT", true, "kB", 8},   {"RECEIVED", true, "kB", 9},
      {"BTM", true, "", 7}};
  if (sample.taken == 0) return "";
  if (sample.stations.empty()) return "no stations\n";
  std::vector<std::vector<std::string>> lines;
  for (const top_station& one : sample.stations)
    lines.push_back(cells_of(one));
  return columns_text(kColumns, lines, true, width);
}

static std::string title_of(const top_sample& sample, size_t first, size_t room) {
  const size_t all = sample.stations.size();
  if (sample.taken == 0) return "no answer yet, " + moment_stamp() + "\n";
  const size_t last = std::min(first + room, all);
  const std::string stations = room == 0 || last - first == all
                                   ? text_format("%zu station%s", all, all == 1 ? "" : "s")
                                   : text_format("stations %zu-%zu of %zu", first + 1, last, all);
  return stations + ", " + sample.stamp + "\n";
}

// The text below the title: why the table is old, or "".
static std::string note_of(const top_view& view, size_t width) {
  const double now = moment_now();
  const std::string age = view.shown.taken == 0 ? ""
                                                : text_format("; what is shown is %.0f s old",
                                                              std::floor(now - view.shown.taken));
  if (view.asking != 0 && now - view.asking_since >= kLateSeconds)
    return text_wrap(text_format("waiting for BSS %d, %.0f s so far", view.asking,
                                 std::floor(now - view.asking_since)) +
                         age,
                     width, 0, 0) +
           "\n";
  if (view.failure.line.empty()) return "\n";
  // Without an answer the table shows an earlier sample.
  const bool is_old = view.failure.status == kExitNoAnswer;
  return text_wrap(view.failure.line + (is_old ? age : ""), width, 0, 0) + "\n";
}

static size_t lines_in(const std::string& text) {
  return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

static size_t head_of(size_t height) {
  return height < kHeightOfAll ? 0 : kTableHead;
}

// Screen rows left for stations; the cursor is below them.
static size_t room_of(const top_view& view, size_t note_lines) {
  const size_t height = screen_height(view.streams.out);
  const size_t others = 1 + note_lines + head_of(height) + 1;  // title and cursor too
  return height > others ? height - others : 0;
}

// Scrolls so that the screen is as full as the stations allow.
static void keep_in_bounds(top_view& view, size_t room) {
  const size_t all = view.shown.stations.size();
  view.first = std::min(view.first, all > room ? all - room : 0);
}

static std::string window_of(const std::string& table, size_t head, size_t first, size_t count) {
  std::string out;
  size_t number = 0;
  for (size_t at = 0; at < table.size(); ++number) {
    const size_t end = table.find('\n', at) + 1;
    const size_t row = number - kTableHead;
    const bool in = number < kTableHead ? number < head : row >= first && row < first + count;
    if (in) out += table.substr(at, end - at);
    at = end;
  }
  return out;
}

static std::string screen_of(top_view& view) {
  const size_t width = terminal_width(view.streams.out);
  const size_t height = screen_height(view.streams.out);
  std::string note = note_of(view, width);
  if (height < kHeightOfAll && note == "\n") note.clear();
  const size_t room = room_of(view, lines_in(note));
  keep_in_bounds(view, room);
  return screen_lines(title_of(view.shown, view.first, room) + note +
                          window_of(table_of(view.shown, width), head_of(height), view.first, room),
                      height - 1, width);
}

static void draw(top_view& view) {
  print(view.streams, "\033[H\033[J" + screen_of(view));
  print_flush(view.streams);
  view.drawn = moment_now();
}

static void scroll(top_view& view, live_key key) {
  const size_t page = std::max<size_t>(room_of(view, 1), 1);
  const auto back = [&](size_t lines) { view.first -= std::min(view.first, lines); };
  if (key == live_key::kUp) back(1);
  if (key == live_key::kDown) view.first++;
  if (key == live_key::kPageUp) back(page);
  if (key == live_key::kPageDown) view.first += page;
  if (key == live_key::kFirst) view.first = 0;
  if (key == live_key::kLast) view.first = view.shown.stations.size();
  draw(view);
}

// Called during a call without an answer; false gives the call up.
static bool top_go_on(void* context) {
  top_view& view = *static_cast<top_view*>(context);
  for (live_key key = live_read(); key != live_key::kNone; key = live_read()) {
    if (key == live_key::kQuit) return false;
    scroll(view, key);
  }
  const double now = moment_now();
  if (now - view.asking_since >= kLateSeconds && now - view.drawn >= kLateSeconds) draw(view);
  return true;
}

// False if the user quits.
static bool wait(top_view& view, double moment) {
  while (true) {
    const live_key key = live_wait(moment);
    if (key == live_key::kNone) return true;
    if (key == live_key::kQuit) return false;
    scroll(view, key);
  }
}

// False if the user quits.
static bool take(top_view& view) {
  const call_idle idle = {live_fd(), top_go_on, &view};
  view.asking_since = moment_now();
  top_sample sample = top_take(view.options, view.settings.choice, view.shown, &idle, &view.asking);
  view.asking = 0;
  if (sample.failure.given_up) return false;
  view.failure = sample.failure;
  if (sample.taken != 0) view.shown = std::move(sample);
  draw(view);
  return true;
}

static void redraw_until_quit(top_view& view) {
  const repeat_settings& repeat = view.settings.repeat;
  double next = moment_now();
  for (unsigned long i = 0; repeat.count == 0 || i < repeat.count; ++i) {
    if (i != 0) {
      next = moment_next(next, repeat.every);
      if (!wait(view, next)) return;
    }
    if (!take(view)) return;
  }
}

static exit_status run_on_terminal(const output_streams& streams, const client_options& options,
                                   const top_options& settings) {
  top_view view = {streams, options, settings, {}, {}, 0, 0, 0, 0};
  live_begin(streams, true);
  redraw_until_quit(view);
  live_end();
  // Leave the last screen on the terminal.
  print(streams, screen_of(view));
  print_flush(streams);
  return view.failure.status;
}

static exit_status run_in_pipe(const output_streams& streams, const client_options& options,
                               const top_options& settings) {
  top_sample sample;
  double next = moment_now();
  for (unsigned long i = 0; i < std::max(settings.repeat.count, 1ul); ++i) {
    if (i != 0) {
      next = moment_next(next, settings.repeat.every);
      moment_sleep_until(next);
    }
    int asking = 0;
    sample = top_take(options, settings.choice, sample, nullptr, &asking);
    if (!sample.failure.line.empty()) return fail(streams, sample.failure);
    const std::string table = (i == 0 ? "" : "\n") + table_of(sample, 0);
    print(streams, options.json ? top_json(sample) : table);
    print_flush(streams);
  }
  return kExitDone;
}

// Words: top [--every TIME] [--count N]. Redraws a terminal until q is pressed. Elsewhere
// prints a table N times, once without --count.
static exit_status run_top(const output_streams& streams, const client_options& options) {
  top_options settings;
  std::string error;
  if (!top_options_read({options.words.begin() + 1, options.words.end()}, settings, error))
    return fail(streams, kExitUsage, error);
  if (options.json || !screen_is(streams.out)) return run_in_pipe(streams, options, settings);
  return run_on_terminal(streams, options, settings);
}

static std::string offered_orders() {
  return top_order_names(" ");
}

static constexpr const char* kTopUsages[] = {
    "[OPTION...] top [--every TIME] [--count N] [--sort KEY] [--bss LIST]"};
static constexpr command_offer kTopOffers[] = {{"*", "--every --count --sort --bss"},
                                               {"--sort", "", offered_orders}};

const command_row kTopCommand = {
    .name = "top",
    .usages = kTopUsages,
    .meaning =
        "stations of all BSSs, or of those of LIST, such as 1,9; the busiest first, or by KEY: "
        "bss, station, rssi, down, up, out, in, sent, received. Arrows and page keys scroll, q "
        "quits. UP and BTM are known on an MT7615 only: elsewhere UP is DOWN, and BTM '-'",
    .offers = kTopOffers,
    .valued = "--bss",
    .run = run_top};
