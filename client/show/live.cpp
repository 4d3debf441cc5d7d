#include "show/live.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "base/moment.h"

static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGTSTP, SIGWINCH};
// In seconds: how late a signal may be noticed that comes between check and wait.
static constexpr double kLongestWait = 0.25;

static constexpr struct {
  std::string_view bytes;
  live_key key;
} kKeys[] = {
    {"q", live_key::kQuit},         {"Q", live_key::kQuit},           {"\033[A", live_key::kUp},
    {"\033OA", live_key::kUp},      {"\033[B", live_key::kDown},      {"\033OB", live_key::kDown},
    {"\033[5~", live_key::kPageUp}, {"\033[6~", live_key::kPageDown}, {"\033[H", live_key::kFirst},
    {"k", live_key::kUp},           {"j", live_key::kDown},           {"b", live_key::kPageUp},
    {" ", live_key::kPageDown},     {"g", live_key::kFirst},          {"G", live_key::kLast},
    {"\033OH", live_key::kFirst},   {"\033[1~", live_key::kFirst},    {"\033[F", live_key::kLast},
    {"\033OF", live_key::kLast},    {"\033[4~", live_key::kLast},
};

static volatile sig_atomic_t ended, stopped, resized;  // set by the handler

namespace {

struct live_terminal {
  const output_streams* streams;
  bool own_screen;
  bool has_keys;
  termios before;
  std::string typed;  // read but not yet used
} terminal;

}  // namespace

static void note_signal(int number) {
  if (number == SIGWINCH)
    resized = 1;
  else if (number == SIGTSTP)
    stopped = 1;
  else
    ended = 1;
}

static void enter() {
  for (const int number : kSignals)
    signal(number, note_signal);
  // A background process must not touch the terminal.
  terminal.has_keys =
      tcgetpgrp(STDIN_FILENO) == getpgrp() && tcgetattr(STDIN_FILENO, &terminal.before) == 0;
  termios raw = terminal.before;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  if (terminal.has_keys) tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  if (terminal.own_screen) print(*terminal.streams, "\033[?1049h");
  print_flush(*terminal.streams);
}

static void leave() {
  if (terminal.has_keys) tcsetattr(STDIN_FILENO, TCSANOW, &terminal.before);
  if (terminal.own_screen) print(*terminal.streams, "\033[?1049l");
  print_flush(*terminal.streams);
  for (const int number : kSignals)
    signal(number, SIG_DFL);
}

static void stop() {
  leave();
  raise(SIGTSTP);
  enter();
}

// The length of the first key in `typed`; 0 if it is incomplete.
static size_t first_key_length(std::string_view typed) {
  if (typed[0] != '\033') return 1;
  if (typed.size() < 2) return 0;
  if (typed[1] != '[' && typed[1] != 'O') return 1;
  const auto is_last = [](char c) { return c >= '@' && c <= '~'; };
  const auto end = std::find_if(typed.begin() + 2, typed.end(), is_last);
  return end == typed.end() ? 0 : static_cast<size_t>(end - typed.begin()) + 1;
}

static live_key next_typed() {
  std::string& typed = terminal.typed;
  while (!typed.empty()) {
    const size_t length = first_key_length(typed);
    if (length == 0) break;
    const std::string bytes = typed.substr(0, length);
    typed.erase(0, length);
    for (const auto& one : kKeys) {
      if (one.bytes == bytes) return one.key;
    }
  }
  return live_key::kNone;
}

static bool wait_readable(double seconds) {
  pollfd input = {live_fd(), POLLIN, 0};
  return poll(&input, 1, static_cast<int>(seconds * 1000) + 1) > 0;
}

void live_begin(const output_streams& streams, bool own_screen) {
  terminal = {&streams, own_screen, false, {}, ""};
  ended = 0;
  stopped = 0;
  resized = 0;
  enter();
}

void live_end() {
  leave();
}

int live_fd() {
  return terminal.has_keys ? STDIN_FILENO : -1;
}

live_key live_read() {
  if (ended != 0) return live_key::kQuit;
  if (stopped != 0) {
    stopped = 0;
    stop();
    return live_key::kRedraw;
  }
  if (resized != 0) {
    resized = 0;
    return live_key::kRedraw;
  }
  const live_key typed = next_typed();
  pollfd input = {live_fd(), POLLIN, 0};
  if (typed != live_key::kNone || poll(&input, 1, 0) <= 0) return typed;
  char bytes[64];
  const ssize_t length = read(STDIN_FILENO, bytes, sizeof bytes);
  if (length <= 0) return live_key::kQuit;
  terminal.typed.append(bytes, static_cast<size_t>(length));
  return next_typed();
}

live_key live_wait(double moment) {
  while (true) {
    const live_key key = live_read();
    const double left = moment - moment_now();
    if (key != live_key::kNone || left <= 0) return key;
    wait_readable(std::min(left, kLongestWait));
  }
}
