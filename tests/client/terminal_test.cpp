// Commands that redraw, on a pseudo-terminal.
#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "base/moment.h"
#include "fake_daemon.h"

namespace {

struct terminal {
  pid_t pid = -1;
  int fd = -1;
  std::string shown;  // all output so far
};

}  // namespace

static void start(terminal& one, uint16_t port, std::vector<std::string> words, unsigned short rows,
                  unsigned short columns, const char* name = "xterm") {
  const winsize size = {rows, columns, 0, 0};
  words.insert(words.begin(), {"wificonf", "--host", "127.0.0.1", "--port", std::to_string(port)});
  std::vector<char*> argv;
  for (std::string& word : words)
    argv.push_back(word.data());
  argv.push_back(nullptr);
  one.pid = forkpty(&one.fd, nullptr, nullptr, &size);
  if (one.pid != 0) return;
  setenv("TERM", name, 1);
  execv(WIFICONF_DIR "/wificonf", argv.data());
  _exit(127);
}

// Reads until the condition holds. False on timeout or at the end.
template <typename Condition>
static bool read_until(terminal& one, Condition holds) {
  const double deadline = moment_now() + 20;
  while (!holds()) {
    pollfd input = {one.fd, POLLIN, 0};
    char bytes[4096];
    if (moment_now() > deadline || poll(&input, 1, 100) < 0) return false;
    if (input.revents == 0) continue;
    const ssize_t length = read(one.fd, bytes, sizeof bytes);
    if (length <= 0) return false;
    one.shown.append(bytes, static_cast<size_t>(length));
  }
  return true;
}

// Reads to the end. Returns the exit status, or -1 if the program was killed.
static int finish(terminal& one) {
  const double started = moment_now();
  read_until(one, [] { return false; });
  if (moment_now() - started >= 20) kill(one.pid, SIGKILL);
  int status = 0;
  EXPECT_EQ(waitpid(one.pid, &status, 0), one.pid);
  close(one.fd);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

static std::vector<std::string> split(const std::string& text, const std::string& at) {
  std::vector<std::string> parts;
  size_t from = 0;
  for (size_t end = text.find(at); end != std::string::npos; end = text.find(at, from)) {
    parts.push_back(text.substr(from, end - from));
    from = end + at.size();
  }
  parts.push_back(text.substr(from));
  return parts;
}

static constexpr char kRedraw[] = "\033[H\033[J";
static constexpr char kWatchRedraw[] = "\033[H\033[2J";
static constexpr char kLeave[] = "\033[?1049l";

// Two stations on BSS 1. The second sends more than the first from call to call.
static byte_string stations(const byte_string& call, uint32_t samples) {
  const bool has_stations = call[43] == 1;
  std::string record(2436, '\0');
  record[0] = has_stations ? 2 : 0;
  for (size_t i = 0; i < 2; ++i) {
    char* row = &record[4 + 76 * i];
    const uint32_t sent = samples * 1000 * static_cast<uint32_t>(1 + 9 * i);
    for (size_t k = 0; k < 4; ++k)
      row[20 + k] = static_cast<char>(sent >> (8 * k));
    snprintf(row + 40, 18, "02:00:00:00:00:0%zu", i + 1);
    row[57] = 0;
  }
  byte_string reply = fake_reply(call, 0, {0, 0});
  xdr_put_opaque(reply, record);
  return reply;
}

namespace {

struct station_daemon {
  FakeDaemon daemon;
  uint32_t samples = 0;
};

}  // namespace

static void start_stations(station_daemon& one) {
  fake_daemon_start(one.daemon, [&one](const byte_string& call) {
    if (call[43] == 1) one.samples++;
    return std::vector<Datagram>{{stations(call, one.samples)}};
  });
}

static bool has_keys_by_line(int fd) {
  termios settings{};
  tcgetattr(fd, &settings);
  return (settings.c_lflag & ICANON) != 0 && (settings.c_lflag & ECHO) != 0;
}

static bool soon_has_keys_by_line(int fd) {
  const double deadline = moment_now() + 20;
  while (!has_keys_by_line(fd) && moment_now() < deadline)
    moment_sleep_until(moment_now() + 0.005);
  return has_keys_by_line(fd);
}

TEST(Terminal, TopRedrawsUntilQ) {
  station_daemon stations;
  start_stations(stations);
  terminal one;
  start(one, stations.daemon.port, {"top", "--every", "50ms"}, 24, 80);
  EXPECT_TRUE(read_until(one, [&] { return split(one.shown, kRedraw).size() > 3; })) << one.shown;
  EXPECT_FALSE(has_keys_by_line(one.fd));
  const size_t frames = split(one.shown, kRedraw).size();
  EXPECT_EQ(write(one.fd, "x", 1), 1);
  EXPECT_TRUE(read_until(one, [&] { return split(one.shown, kRedraw).size() > frames + 1; }))
      << "other keys do nothing";
  EXPECT_EQ(write(one.fd, "q", 1), 1);
  EXPECT_TRUE(read_until(one, [&] { return one.shown.find(kLeave) != std::string::npos; }))
      << one.shown;
  EXPECT_TRUE(soon_has_keys_by_line(one.fd));
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(stations.daemon);
  EXPECT_NE(split(one.shown, kLeave).back().find("02:00:00:00:00:01"), std::string::npos)
      << "what was seen last stays";
  const std::string frame = split(one.shown, kRedraw).at(3);
  const size_t busy = frame.find("02:00:00:00:00:02");
  EXPECT_TRUE(frame.starts_with("2 stations, ")) << frame;
  EXPECT_NE(busy, std::string::npos) << frame;
  EXPECT_LT(busy, frame.find("02:00:00:00:00:01")) << frame;
}

TEST(Terminal, TopLeavesItAsItWas) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    station_daemon stations;
    start_stations(stations);
    terminal one;
    start(one, stations.daemon.port, {"top", "--every", "20ms"}, 24, 80);
    EXPECT_TRUE(read_until(one, [&] { return split(one.shown, kRedraw).size() > 2; }));
    kill(one.pid, number);
    EXPECT_TRUE(read_until(one, [&] { return one.shown.find(kLeave) != std::string::npos; }))
        << number;
    EXPECT_TRUE(soon_has_keys_by_line(one.fd)) << number;
    EXPECT_EQ(finish(one), 0) << number;
    fake_daemon_stop(stations.daemon);
  }
}

TEST(Terminal, TopGoesOnWithoutADaemon) {
  terminal one;
  start(one, fake_closed_port(), {"top", "--every", "20ms"}, 24, 80);
  EXPECT_TRUE(read_until(one, [&] { return split(one.shown, "nothing listens").size() > 3; }));
  EXPECT_EQ(write(one.fd, "q", 1), 1);
  EXPECT_EQ(finish(one), 3);
}

// The rows of the last complete frame, which the screen shows.
static std::vector<std::string> last_frame(const terminal& one) {
  return split(split(one.shown, kRedraw).back(), "\r\n");
}

static bool soon_shows(terminal& one, const std::string& text) {
  return read_until(one, [&] { return last_frame(one)[0].find(text) != std::string::npos; });
}

static void press(const terminal& one, const std::string& keys) {
  EXPECT_EQ(write(one.fd, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

TEST(Terminal, TopFillsTheScreenAndScrolls) {
  station_daemon stations;
  start_stations(stations);
  terminal one;
  start(one, stations.daemon.port, {"top", "--every", "20ms", "--sort", "station"}, 6, 30);
  EXPECT_TRUE(soon_shows(one, "stations 1-1 of 2, ")) << one.shown;
  const char* const kLater[] = {"\033[B", "\033[6~", "\033[F", "\033OF", "j", " ", "G"};
  const char* const kEarlier[] = {"\033[A", "\033[5~", "\033[H", "\033OA", "k", "b", "g"};
  for (size_t i = 0; i < std::size(kLater); ++i) {
    press(one, kLater[i]);
    EXPECT_TRUE(soon_shows(one, "stations 2-2 of 2, ")) << i;
    press(one, std::string("x\033[Z") + kEarlier[i]);
    EXPECT_TRUE(soon_shows(one, "stations 1-1 of 2, ")) << i;
  }
  press(one, "\033[B\033[B\033[B");
  EXPECT_TRUE(soon_shows(one, "stations 2-2 of 2, ")) << "not beyond the last";
  winsize size = {7, 30, 0, 0};
  EXPECT_EQ(ioctl(one.fd, TIOCSWINSZ, &size), 0);
  EXPECT_TRUE(soon_shows(one, "2 stations, ")) << "in one row more there is room for both";
  press(one, "q");
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(stations.daemon);
  const auto rows = split(split(one.shown, kLeave).back(), "\r\n");
  ASSERT_EQ(rows.size(), 7u) << one.shown;
  EXPECT_NE(rows[4].find("02:00:00:00:00:01"), std::string::npos) << rows[4];
  EXPECT_NE(rows[5].find("02:00:00:00:00:02"), std::string::npos) << rows[5];
  for (const std::string& row : rows)
    EXPECT_LE(row.size(), 30u) << row;
}

TEST(Terminal, TopShowsStationsOnALowScreen) {
  const struct {
    unsigned short height;
    size_t stations;
    const char* title;
  } cases[] = {{5, 2, "2 stations, "},
               {4, 2, "2 stations, "},
               {3, 1, "stations 1-1 of 2, "},
               {2, 0, "2 stations, "}};
  station_daemon stations;
  start_stations(stations);
  for (const auto& c : cases) {
    terminal one;
    start(one, stations.daemon.port, {"top", "--count", "1", "--sort", "station"}, c.height, 30);
    EXPECT_EQ(finish(one), 0);
    const auto rows = split(split(one.shown, kLeave).back(), "\r\n");
    EXPECT_TRUE(rows[0].starts_with(c.title)) << c.height << rows[0];
    ASSERT_EQ(rows.size(), 1 + c.stations + 1) << one.shown;
    for (size_t i = 0; i < c.stations; ++i)
      EXPECT_NE(rows[1 + i].find("02:00:00:00:00:0" + std::to_string(i + 1)), std::string::npos)
          << rows[1 + i];
  }
  fake_daemon_stop(stations.daemon);
}

// A station on BSS 16 with the largest possible counters and about 15 MB/s.
static byte_string busy_station(const byte_string& call, uint32_t samples) {
  std::string record(2436, '\0');
  record[0] = call[43] == 16 ? 1 : 0;
  const uint32_t bytes = 4294000000u + samples * 300000;
  for (size_t k = 0; k < 4; ++k)
    record[24 + k] = record[32 + k] = static_cast<char>(bytes >> (8 * k));
  record.replace(4, 4, "\xc3\xff\xff\xff");
  record.replace(8, 8, std::string("\0\0\x36\0\0\0\x36\0", 8));  // 3456 * 1024 kbit/s
  record.replace(44, 17, "02:00:00:00:00:01");
  record[4 + 59] = 8;
  byte_string reply = fake_reply(call, 0, {0, 0});
  xdr_put_opaque(reply, record);
  return reply;
}

TEST(Terminal, TopFitsInto80Columns) {
  station_daemon stations;
  fake_daemon_start(stations.daemon, [&](const byte_string& call) {
    if (call[43] == 1) stations.samples++;
    return std::vector<Datagram>{{busy_station(call, stations.samples)}};
  });
  terminal one;
  start(one, stations.daemon.port, {"top", "--count", "2", "--every", "20ms"}, 24, 80);
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(stations.daemon);
  const auto rows = split(split(one.shown, kLeave).back(), "\r\n");
  ASSERT_EQ(rows.size(), 6u) << one.shown;
  for (const std::string& row : rows)
    EXPECT_LE(row.size(), 80u) << row;
  EXPECT_TRUE(rows[2].starts_with("BSS STATION           RSSI   DOWN     UP ")) << rows[2];
  EXPECT_TRUE(rows[3].starts_with("                       dBm Mbit/s Mbit/s ")) << rows[3];
  EXPECT_TRUE(rows[4].starts_with(" 16 02:00:00:00:00:01  -61   3456   3456 ")) << rows[4];
  EXPECT_TRUE(rows[4].ends_with(" 4294600  4294600 yes")) << rows[4];
}

TEST(Terminal, TopLeavesOutCountersBeforeTheAddress) {
  for (const unsigned short width : {60, 45, 21}) {
    station_daemon stations;
    fake_daemon_start(stations.daemon, [&](const byte_string& call) {
      return std::vector<Datagram>{{busy_station(call, stations.samples)}};
    });
    terminal one;
    start(one, stations.daemon.port, {"top", "--count", "1"}, 24, width);
    EXPECT_EQ(finish(one), 0);
    fake_daemon_stop(stations.daemon);
    const auto rows = split(split(one.shown, kLeave).back(), "\r\n");
    ASSERT_EQ(rows.size(), 6u) << one.shown;
    for (const std::string& row : rows)
      EXPECT_LE(row.size(), width) << row;
    EXPECT_TRUE(rows[4].starts_with(" 16 02:00:00:00:00:01")) << rows[4];
    EXPECT_EQ(rows[2].find("RECEIVED"), std::string::npos) << rows[2];
    EXPECT_EQ(rows[2].find("OUT") != std::string::npos, width > 40) << rows[2];
  }
}

namespace {

// A station on BSS 16 that is sent a million bytes a second. BSS 1 answers late in the second
// sample and never in the third.
struct slow_daemon {
  FakeDaemon daemon;
  double started = moment_now();
  int samples = 0;
};

}  // namespace

static std::vector<Datagram> answer_slowly(slow_daemon& one, const byte_string& call) {
  if (call[43] == 1) one.samples++;
  if (call[43] == 1 && one.samples == 2) moment_sleep_until(moment_now() + 1.5);
  if (one.samples >= 3) return {};
  std::string record(2436, '\0');
  record[0] = call[43] == 16 ? 1 : 0;
  const auto sent = static_cast<uint32_t>(1e6 * (moment_now() - one.started));
  for (size_t k = 0; k < 4; ++k)
    record[24 + k] = static_cast<char>(sent >> (8 * k));
  record.replace(44, 17, "02:00:00:00:00:01");
  byte_string reply = fake_reply(call, 0, {0, 0});
  xdr_put_opaque(reply, record);
  return {{reply}};
}

TEST(Terminal, TopSaysWhatItWaitsForAndCountsTheTime) {
  slow_daemon slow;
  fake_daemon_start(slow.daemon,
                    [&](const byte_string& call) { return answer_slowly(slow, call); });
  terminal one;
  start(one, slow.daemon.port, {"top", "--every", "50ms"}, 24, 80);
  const auto shows = [&](const std::string& text) {
    return read_until(one, [&] { return one.shown.find(text) != std::string::npos; });
  };
  EXPECT_TRUE(shows("waiting for BSS 1, 1 s so far; what is shown is 1 s old")) << one.shown;
  const size_t waiting = one.shown.size();
  EXPECT_TRUE(
      read_until(one, [&] { return split(one.shown.substr(waiting), kRedraw).size() > 1; }));
  EXPECT_TRUE(shows("waiting for BSS 1, 2 s so far")) << "the third sample";
  double rate = 0;
  const auto rows = last_frame(one);
  EXPECT_EQ(sscanf(rows.at(4).c_str(), " 16 02:00:00:00:00:01 %*s %*f %*f %lf", &rate), 1);
  EXPECT_GT(rate, 0.8e6) << rows.at(4);
  EXPECT_LT(rate, 1.2e6) << rows.at(4);
  // It must quit now, not after the ten-second timeout of the call.
  const double pressed = moment_now();
  press(one, "q");
  EXPECT_EQ(finish(one), 0);
  EXPECT_LT(moment_now() - pressed, 5);
  fake_daemon_stop(slow.daemon);
}

// No single call of the sixteen is slow, but together they are.
TEST(Terminal, TopSaysWhatItWaitsForWhereManyCallsTakeTheirTime) {
  FakeDaemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    moment_sleep_until(moment_now() + 0.12);
    return std::vector<Datagram>{{stations(call, 1)}};
  });
  terminal one;
  start(one, daemon.port, {"top"}, 24, 80);
  EXPECT_TRUE(
      read_until(one, [&] { return one.shown.find("waiting for BSS ") != std::string::npos; }));
  press(one, "q");
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(daemon);
}

// Types `line` and Enter in the shell; a tab in it completes. True if the client is then called
// with the words.
static bool calls(terminal& one, const std::string& line, const std::string& words) {
  const std::string typed = line + "\r";
  EXPECT_EQ(write(one.fd, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  return read_until(one, [&] { return one.shown.find("<" + words + ">") != std::string::npos; });
}

// Starts a shell without user settings that has read `setup`, and in which "wificonf" prints
// its words.
static void start_shell(terminal& one, const std::vector<std::string>& shell,
                        const std::string& setup) {
  const std::string path = testing::TempDir() + "setup." + std::to_string(getpid());
  FILE* file = fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  fprintf(file, "PATH=" WIFICONF_DIR ":$PATH\n%s\nwificonf() { echo \"<$*>\"; }\necho re''ady\n",
          setup.c_str());
  fclose(file);
  std::vector<char*> argv;
  for (const std::string& word : shell)
    argv.push_back(const_cast<char*>(word.data()));
  argv.push_back(nullptr);
  one.pid = forkpty(&one.fd, nullptr, nullptr, nullptr);
  if (one.pid == 0) {
    setenv("TERM", "vt100", 1);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  const std::string typed = ". " + path + "\r";
  EXPECT_EQ(write(one.fd, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  EXPECT_TRUE(read_until(one, [&] { return one.shown.find("ready") != std::string::npos; }))
      << one.shown;
  unlink(path.c_str());
}

static void expect_completed(const std::vector<std::string>& shell, const std::string& setup) {
  terminal one;
  start_shell(one, shell, setup);
  EXPECT_TRUE(calls(one, "wificonf wlan_get_btm_a\t", "wlan_get_btm_associated_device"));
  EXPECT_TRUE(calls(one, "wificonf --host=h wlan-set-btm\t1", "--host=h wlan_set_btm_enable 1"));
  EXPECT_TRUE(calls(one, "wificonf watch --f\tHNC-GET-RRM\t", "watch --force hnc_get_rrm_enable"));
  EXPECT_EQ(write(one.fd, "exit 0\r", 7), 7);
  EXPECT_EQ(finish(one), 0) << one.shown;
}

TEST(Terminal, BashCompletes) {
  expect_completed({"bash", "--norc", "--noprofile"}, ". <(wificonf completion bash)");
}

TEST(Terminal, ZshCompletes) {
  const std::string start = "autoload -Uz compinit; compinit -u -D\n";
  expect_completed({"zsh", "-f"}, start + ". <(wificonf completion zsh)");
}

// As installed: zsh autoloads the file on first use.
TEST(Terminal, ZshCompletesWithAFileOfItsPath) {
  char directory[] = "/tmp/completions.XXXXXX";
  ASSERT_NE(mkdtemp(directory), nullptr);
  const std::string path = directory;
  expect_completed({"zsh", "-f"}, "wificonf completion zsh >" + path + "/_wificonf; fpath=(" +
                                      path + " $fpath)\nautoload -Uz compinit; compinit -u -D");
  EXPECT_EQ(unlink((path + "/_wificonf").c_str()), 0);
  EXPECT_EQ(rmdir(directory), 0);
}

TEST(Terminal, DumbOneIsTakenForAPipe) {
  station_daemon stations;
  start_stations(stations);
  for (const char* command : {"top", "watch"}) {
    terminal one;
    std::vector<std::string> words = {command, "--count", "1"};
    if (words[0] == "watch") words.insert(words.end(), {"wlan_get_btm_associated_device", "1"});
    start(one, stations.daemon.port, words, 24, 80, "dumb");
    EXPECT_EQ(finish(one), 0);
    EXPECT_NE(one.shown.find("02:00:00:00:00:01"), std::string::npos) << one.shown;
    EXPECT_EQ(one.shown.find('\033'), std::string::npos) << one.shown;
  }
  fake_daemon_stop(stations.daemon);
}

// Every BSS answers with a failure code, as before the drivers are loaded.
TEST(Terminal, TopSaysThatNoRadioIsUp) {
  FakeDaemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    byte_string reply = fake_reply(call, 0, {0xffffffff, 0});
    xdr_put_opaque(reply, std::string(2436, '\0'));
    return std::vector<Datagram>{{reply}};
  });
  terminal one;
  start(one, daemon.port, {"top", "--count", "1"}, 24, 80, "dumb");
  EXPECT_EQ(finish(one), 1);
  fake_daemon_stop(daemon);
  EXPECT_NE(one.shown.find("no radio is up"), std::string::npos) << one.shown;
}

TEST(Terminal, WatchRedrawsWithinTheScreen) {
  FakeDaemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    byte_string reply = fake_reply(call, 0, {0, 16});
    for (int i = 0; i < 17; ++i)
      xdr_put_word(reply, 0);
    return std::vector<Datagram>{{reply}};
  });
  terminal one;
  start(one, daemon.port, {"watch", "wlan_get_stats", "1", "1", "--count", "2", "--every", "20ms"},
        8, 70);
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(daemon);
  const std::vector<std::string> frames = split(one.shown, kWatchRedraw);
  ASSERT_EQ(frames.size(), 3u) << one.shown;
  EXPECT_EQ(frames[0], "");
  for (const std::string& frame : {frames[1], frames[2]}) {
    const std::vector<std::string> lines = split(frame, "\r\n");
    EXPECT_EQ(lines.size(), 8u) << frame;
    EXPECT_TRUE(frame.starts_with("wlan_get_stats, every 0.02 s, ")) << frame;
    EXPECT_TRUE(lines.at(2).starts_with("errors_sent ")) << frame;
    EXPECT_EQ(lines.at(6), "... 12 more lines") << frame;
    for (const std::string& line : lines)
      EXPECT_LE(line.size(), 70u) << line;
  }
  EXPECT_EQ(frames[1].find("/s"), std::string::npos) << frames[1];
  EXPECT_NE(frames[2].find(" 0.0/s"), std::string::npos) << frames[2];
}

TEST(Terminal, WatchEndsWithQ) {
  FakeDaemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    return std::vector<Datagram>{{fake_reply(call, 0, {0, 4, 6, 0, 0, 0, 0})}};
  });
  for (const char* every : {"24h", "20ms"}) {
    terminal one;
    start(one, daemon.port, {"watch", "wlan_get_current_channel", "1", "--every", every}, 24, 80);
    EXPECT_TRUE(read_until(one, [&] { return one.shown.find("\n6\r\n") != std::string::npos; }));
    EXPECT_FALSE(has_keys_by_line(one.fd));
    press(one, "xq");
    EXPECT_EQ(finish(one), 0);
  }
  fake_daemon_stop(daemon);
}

// Stopped from the keyboard, it gives the terminal back. It takes it again when continued.
TEST(Terminal, TopCanBeStoppedAndGoesOn) {
  station_daemon stations;
  start_stations(stations);
  terminal one;
  start_shell(one, {"bash", "--norc", "--noprofile"}, "");
  press(one, "command wificonf --host 127.0.0.1 --port " + std::to_string(stations.daemon.port) +
                 " top --every 20ms\r");
  EXPECT_TRUE(read_until(one, [&] { return split(one.shown, kRedraw).size() > 2; })) << one.shown;
  press(one, "\032");
  EXPECT_TRUE(read_until(one, [&] { return one.shown.find("Stopped") != std::string::npos; }))
      << one.shown;
  EXPECT_NE(one.shown.find(kLeave), std::string::npos) << one.shown;
  const size_t stopped = one.shown.size();
  press(one, "fg\r");
  EXPECT_TRUE(
      read_until(one, [&] { return split(one.shown.substr(stopped), kRedraw).size() > 2; }));
  press(one, "q");
  EXPECT_TRUE(read_until(one, [&] { return one.shown.find(kLeave, stopped) != one.shown.npos; }));
  press(one, "exit 0\r");
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(stations.daemon);
}

TEST(Terminal, WatchSaysOnItsScreenWhyThereIsNoAnswer) {
  terminal one;
  start(one, fake_closed_port(),
        {"watch", "wlan_get_channel", "1", "--count", "2", "--every", "20ms"}, 24, 80);
  EXPECT_EQ(finish(one), 3);
  const std::vector<std::string> frames = split(one.shown, kWatchRedraw);
  ASSERT_EQ(frames.size(), 3u) << one.shown;
  EXPECT_EQ(frames[0], "");
  EXPECT_NE(frames[2].find("nothing listens"), std::string::npos) << frames[2];
}

// The first answer comes late, the second never.
TEST(Terminal, WatchSaysThatItWaits) {
  FakeDaemon daemon;
  int calls = 0;
  fake_daemon_start(daemon, [&calls](const byte_string& call) -> std::vector<Datagram> {
    if (calls++ > 0) return {};
    moment_sleep_until(moment_now() + 1.5);
    return {{fake_reply(call, 0, {0, 4, 6, 0, 0, 0, 0})}};
  });
  terminal one;
  start(one, daemon.port, {"watch", "wlan_get_current_channel", "1", "--every", "20ms"}, 24, 80);
  const auto shows = [&](const std::string& text) {
    return read_until(one, [&] { return one.shown.find(text) != std::string::npos; });
  };
  EXPECT_TRUE(shows("waiting for an answer, 1 s so far\r\n")) << one.shown;
  EXPECT_TRUE(shows("waiting for an answer, 1 s so far; what is shown is 1 s old\r\n\r\n6\r\n"))
      << one.shown;
  press(one, "q");
  EXPECT_EQ(finish(one), 0);
  fake_daemon_stop(daemon);
}
