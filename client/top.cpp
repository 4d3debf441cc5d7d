#include "top.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "columns.h"
#include "lookup.h"
#include "moment.h"
#include "payload.h"
#include "screen.h"
#include "settings.h"
#include "show.h"
#include "text.h"

namespace {

constexpr int kBssMax = 16;
constexpr char kCtrlC = 3;

struct station {
  int bss;
  std::string mac, rssi, down, up, btm, sent, received;
  std::string row;                  // the record
  double sent_rate, received_rate;  // per second; negative: not known
};

struct stations_sample {
  double taken = 0;
  std::vector<station> stations;
  std::string problem;  // why there are none
  int answering = 0;    // BSSs that the driver has up
  bool no_radio = false;
};

const payload_field& field_of(const payload_rows& rows, std::string_view name) {
  return *std::find_if(rows.fields.begin(), rows.fields.end(),
                       [&](const payload_field& field) { return field.name == name; });
}

// Bytes would be up to ten digits, for which a terminal of 80 columns has no room.
std::string kilobytes(const payload_rows& rows, const char* name, std::string_view row) {
  return text_format("%.0f",
                     static_cast<double>(payload_unsigned(field_of(rows, name), row)) / 1000);
}

station station_of(const payload_rows& rows, int bss, std::string_view row) {
  const auto shown = [&](const char* name) { return show_cell(field_of(rows, name), row); };
  return {bss,
          shown("mac_address"),
          shown("rssi"),
          shown("downlink_rate"),
          shown("uplink_rate"),
          payload_unsigned(field_of(rows, "btm"), row) != 0 ? "yes" : "-",
          kilobytes(rows, "bytes_sent", row),
          kilobytes(rows, "bytes_received", row),
          std::string(row),
          -1,
          -1};
}

// Bytes per second since a row some time before; negative when the counter has gone
// back.
double rate_since(const payload_rows& rows, const char* name, const station& then,
                  const station& current, double seconds) {
  uint64_t growth = 0;
  if (!payload_growth(field_of(rows, name), then.row, current.row, &growth)) return -1;
  return static_cast<double>(growth) / seconds;
}

// Fills in the rates of a station that was there before.
void add_rates(const payload_rows& rows, station& current, const stations_sample& before,
               double taken) {
  for (const station& then : before.stations) {
    if (then.mac != current.mac || then.bss != current.bss) continue;
    const double seconds = taken - before.taken;
    current.sent_rate = rate_since(rows, "bytes_sent", then, current, seconds);
    current.received_rate = rate_since(rows, "bytes_received", then, current, seconds);
  }
}

const procedure_row& station_list() {
  return *lookup_name("wlan_get_btm_associated_device");
}

// Appends the stations of a BSS. False when the daemon does not answer; a BSS
// that the driver does not have has none.
bool take_bss(const client_options& options, int bss, stations_sample& sample) {
  const procedure_row& procedure = station_list();
  prepared_call prepared = {&procedure, {}};
  wire_put_word(prepared.arguments, static_cast<uint32_t>(bss));
  decoded_reply reply;
  sample.problem = session_try(options, prepared, reply);
  if (!sample.problem.empty()) return false;
  if (reply.code < 0) return true;
  sample.answering++;
  const payload_rows& rows = *payload_find(procedure)->rows;
  for (uint32_t i = 0; i < payload_row_count(rows, reply.data); i++)
    sample.stations.push_back(station_of(rows, bss, payload_row(rows, reply.data, i)));
  return true;
}

bool busier(const station& a, const station& b) {
  const double busy_a = std::max(a.sent_rate, 0.0) + std::max(a.received_rate, 0.0);
  const double busy_b = std::max(b.sent_rate, 0.0) + std::max(b.received_rate, 0.0);
  if (busy_a != busy_b) return busy_a > busy_b;
  return a.bss != b.bss ? a.bss < b.bss : a.mac < b.mac;
}

stations_sample take_sample(const client_options& options, const stations_sample& before) {
  stations_sample sample;
  sample.taken = moment_now();
  for (int bss = 1; bss <= kBssMax; bss++) {
    if (!take_bss(options, bss, sample)) return sample;
  }
  if (sample.answering == 0) {
    sample.problem =
        "no radio is up: all 16 BSSs answered a failure code; 'wificonf wlan_load 1' and then "
        "'wificonf wlan_init' bring them up";
    sample.no_radio = true;
  }
  for (station& current : sample.stations)
    add_rates(*payload_find(station_list())->rows, current, before, sample.taken);
  std::sort(sample.stations.begin(), sample.stations.end(), busier);
  return sample;
}

std::string rate_text(double rate) {
  return rate < 0 ? "-" : text_format("%.0f", rate);
}

std::string table_of(const stations_sample& sample, size_t width) {
  static constexpr text_column kColumns[] = {{"BSS", true},
                                             {"STATION", false},
                                             {"RSSI", true, "dBm"},
                                             {"DOWN", true, "Mbit/s"},
                                             {"UP", true, "Mbit/s"},
                                             {"OUT", true, "B/s"},
                                             {"IN", true, "B/s"},
                                             {"SENT", true, "kB"},
                                             {"RECEIVED", true, "kB"},
                                             {"BTM", true}};
  if (!sample.problem.empty()) return text_wrap(sample.problem, width, 0, 0) + "\n";
  if (sample.stations.empty()) return "no stations\n";
  std::vector<std::vector<std::string>> lines;
  for (const station& one : sample.stations)
    lines.push_back({std::to_string(one.bss), one.mac, one.rssi, one.down, one.up,
                     rate_text(one.sent_rate), rate_text(one.received_rate), one.sent, one.received,
                     one.btm});
  return columns_text(kColumns, lines, true, width);
}

volatile sig_atomic_t ended;

void note_end(int) {
  ended = 1;
}

// Waits until `moment`; true when the user asked to quit.
bool wait_for_quit(double moment) {
  while (ended == 0) {
    const double left = moment - moment_now();
    if (left <= 0) return false;
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, static_cast<int>(left * 1000) + 1) <= 0) continue;
    char key = 'q';
    if (read(STDIN_FILENO, &key, 1) <= 0 || key == 'q' || key == 'Q' || key == kCtrlC) return true;
  }
  return true;
}

// "24 stations, 20 shown, ..." where the screen has no more lines.
std::string title_of(const stations_sample& sample, size_t shown) {
  std::string title = text_format("%zu stations", sample.stations.size());
  if (shown < sample.stations.size()) title += text_format(", %zu shown", shown);
  return title + ", " + moment_stamp() + "\n\n";
}

std::string screen_of(const output_streams& streams, const stations_sample& sample) {
  const size_t height = screen_height(streams.out) - 1, width = terminal_width(streams.out);
  const size_t room = height > 4 ? height - 4 : 0;  // without title, blank line, headings, units
  return screen_lines(title_of(sample, room) + table_of(sample, width), height, width);
}

void draw(const output_streams& streams, const stations_sample& sample) {
  print(streams, "\033[H\033[J" + screen_of(streams, sample));
  print_flush(streams);
}

stations_sample redraw_until_quit(const output_streams& streams, const client_options& options,
                                  const repeat_settings& settings) {
  stations_sample sample;
  double next = moment_now();
  for (unsigned long i = 0; settings.count == 0 || i < settings.count; i++) {
    if (i != 0) {
      next = moment_next(next, settings.every);
      if (wait_for_quit(next)) break;
    }
    sample = take_sample(options, sample);
    draw(streams, sample);
  }
  return sample;
}

exit_status status_of(const stations_sample& sample) {
  if (sample.problem.empty()) return kExitDone;
  return sample.no_radio ? kExitFailureCode : kExitNoAnswer;
}

// The terminal gives single keys, on a screen of its own, while it redraws.
exit_status run_on_terminal(const output_streams& streams, const client_options& options,
                            const repeat_settings& settings) {
  termios before{};
  const bool has_keys = tcgetattr(STDIN_FILENO, &before) == 0;
  termios raw = before;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
  for (const int number : {SIGINT, SIGTERM, SIGHUP})
    signal(number, note_end);
  if (has_keys) tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  print(streams, "\033[?1049h");
  const stations_sample last = redraw_until_quit(streams, options, settings);
  if (has_keys) tcsetattr(STDIN_FILENO, TCSANOW, &before);
  // What was seen last stays on the terminal.
  print(streams, "\033[?1049l" + screen_of(streams, last));
  print_flush(streams);
  return status_of(last);
}

exit_status run_in_pipe(const output_streams& streams, const client_options& options,
                        const repeat_settings& settings) {
  stations_sample sample;
  double next = moment_now();
  for (unsigned long i = 0; i < std::max(settings.count, 1ul); i++) {
    if (i != 0) {
      next = moment_next(next, settings.every);
      moment_sleep_until(next);
    }
    sample = take_sample(options, sample);
    if (!sample.problem.empty()) return fail(streams, status_of(sample), sample.problem);
    print(streams, (i == 0 ? "" : "\n") + table_of(sample, 0));
    print_flush(streams);
  }
  return kExitDone;
}

}  // namespace

exit_status run_top(const output_streams& streams, const client_options& options) {
  std::vector<std::string> words(options.words.begin() + 1, options.words.end());
  repeat_settings settings;
  std::string error;
  if (!settings_take(words, settings, error)) return fail(streams, kExitUsage, error);
  if (!words.empty()) return fail(streams, kExitUsage, "top takes [--every TIME] [--count N] only");
  if (!screen_is(streams.out)) return run_in_pipe(streams, options, settings);
  return run_on_terminal(streams, options, settings);
}
