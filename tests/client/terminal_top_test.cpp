// "top" on a pseudo-terminal.
#include "terminal_support.h"

#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>

TEST(Terminal, TopRedrawsUntilQ) {
  station_daemon stations;
  station_daemon_start(stations);
  terminal one;
  terminal_start(one, stations.daemon.port, {"top", "--every", "50ms"}, 24, 80);
  EXPECT_TRUE(terminal_read_until(one, [&] {
    return terminal_split(one.shown, kTerminalRedraw).size() > 3;
  })) << one.shown;
  EXPECT_FALSE(terminal_has_keys_by_line(one.fd));
  const size_t frames = terminal_split(one.shown, kTerminalRedraw).size();
  EXPECT_EQ(write(one.fd, "x", 1), 1);
  EXPECT_TRUE(terminal_read_until(one, [&] {
    return terminal_split(one.shown, kTerminalRedraw).size() > frames + 1;
  })) << "other keys do nothing";
  EXPECT_EQ(write(one.fd, "q", 1), 1);
  EXPECT_TRUE(terminal_read_until(one, [&] {
    return one.shown.find(kTerminalLeave) != std::string::npos;
  })) << one.shown;
  EXPECT_TRUE(terminal_soon_has_keys_by_line(one.fd));
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(stations.daemon);
  EXPECT_NE(terminal_split(one.shown, kTerminalLeave).back().find("02:00:00:00:00:01"),
            std::string::npos)
      << "what was seen last stays";
  const std::string frame = terminal_split(one.shown, kTerminalRedraw).at(3);
  const size_t busy = frame.find("02:00:00:00:00:02");
  EXPECT_TRUE(frame.starts_with("2 stations, ")) << frame;
  EXPECT_NE(busy, std::string::npos) << frame;
  EXPECT_LT(busy, frame.find("02:00:00:00:00:01")) << frame;
}

TEST(Terminal, TopLeavesItAsItWas) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    station_daemon stations;
    station_daemon_start(stations);
    terminal one;
    terminal_start(one, stations.daemon.port, {"top", "--every", "20ms"}, 24, 80);
    EXPECT_TRUE(terminal_read_until(
        one, [&] { return terminal_split(one.shown, kTerminalRedraw).size() > 2; }));
    kill(one.pid, number);
    EXPECT_TRUE(terminal_read_until(one, [&] {
      return one.shown.find(kTerminalLeave) != std::string::npos;
    })) << number;
    EXPECT_TRUE(terminal_soon_has_keys_by_line(one.fd)) << number;
    EXPECT_EQ(terminal_finish(one), 0) << number;
    fake_daemon_stop(stations.daemon);
  }
}

TEST(Terminal, TopGoesOnWithoutADaemon) {
  terminal one;
  terminal_start(one, fake_closed_port(), {"top", "--every", "20ms"}, 24, 80);
  EXPECT_TRUE(terminal_read_until(
      one, [&] { return terminal_split(one.shown, "nothing listens").size() > 3; }));
  EXPECT_EQ(write(one.fd, "q", 1), 1);
  EXPECT_EQ(terminal_finish(one), 3);
}

TEST(Terminal, TopFillsTheScreenAndScrolls) {
  station_daemon stations;
  station_daemon_start(stations);
  terminal one;
  terminal_start(one, stations.daemon.port, {"top", "--every", "20ms", "--sort", "station"}, 6, 30);
  EXPECT_TRUE(terminal_soon_shows(one, "stations 1-1 of 2, ")) << one.shown;
  const char* const later[] = {"\033[B", "\033[6~", "\033[F", "\033OF", "j", " ", "G"};
  const char* const earlier[] = {"\033[A", "\033[5~", "\033[H", "\033OA", "k", "b", "g"};
  for (size_t i = 0; i < std::size(later); ++i) {
    terminal_press(one, later[i]);
    EXPECT_TRUE(terminal_soon_shows(one, "stations 2-2 of 2, ")) << i;
    terminal_press(one, std::string("x\033[Z") + earlier[i]);
    EXPECT_TRUE(terminal_soon_shows(one, "stations 1-1 of 2, ")) << i;
  }
  terminal_press(one, "\033[B\033[B\033[B");
  EXPECT_TRUE(terminal_soon_shows(one, "stations 2-2 of 2, ")) << "not beyond the last";
  winsize size = {7, 30, 0, 0};
  EXPECT_EQ(ioctl(one.fd, TIOCSWINSZ, &size), 0);
  EXPECT_TRUE(terminal_soon_shows(one, "2 stations, ")) << "in one row more there is room for both";
  terminal_press(one, "q");
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(stations.daemon);
  const auto rows = terminal_split(terminal_split(one.shown, kTerminalLeave).back(), "\r\n");
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
  station_daemon_start(stations);
  for (const auto& c : cases) {
    terminal one;
    terminal_start(one, stations.daemon.port, {"top", "--count", "1", "--sort", "station"},
                   c.height, 30);
    EXPECT_EQ(terminal_finish(one), 0);
    const auto rows = terminal_split(terminal_split(one.shown, kTerminalLeave).back(), "\r\n");
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
    return std::vector<fake_datagram>{{busy_station(call, stations.samples)}};
  });
  terminal one;
  terminal_start(one, stations.daemon.port, {"top", "--count", "2", "--every", "20ms"}, 24, 80);
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(stations.daemon);
  const auto rows = terminal_split(terminal_split(one.shown, kTerminalLeave).back(), "\r\n");
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
      return std::vector<fake_datagram>{{busy_station(call, stations.samples)}};
    });
    terminal one;
    terminal_start(one, stations.daemon.port, {"top", "--count", "1"}, 24, width);
    EXPECT_EQ(terminal_finish(one), 0);
    fake_daemon_stop(stations.daemon);
    const auto rows = terminal_split(terminal_split(one.shown, kTerminalLeave).back(), "\r\n");
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
  fake_daemon daemon;
  double started = moment_now();
  int samples = 0;
};

}  // namespace

static std::vector<fake_datagram> answer_slowly(slow_daemon& one, const byte_string& call) {
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
  terminal_start(one, slow.daemon.port, {"top", "--every", "50ms"}, 24, 80);
  const auto shows = [&](const std::string& text) {
    return terminal_read_until(one, [&] { return one.shown.find(text) != std::string::npos; });
  };
  EXPECT_TRUE(shows("waiting for BSS 1, 1 s so far; what is shown is 1 s old")) << one.shown;
  const size_t waiting = one.shown.size();
  EXPECT_TRUE(terminal_read_until(
      one, [&] { return terminal_split(one.shown.substr(waiting), kTerminalRedraw).size() > 1; }));
  EXPECT_TRUE(shows("waiting for BSS 1, 2 s so far")) << "the third sample";
  double rate = 0;
  const auto rows = terminal_last_frame(one);
  EXPECT_EQ(sscanf(rows.at(4).c_str(), " 16 02:00:00:00:00:01 %*s %*f %*f %lf", &rate), 1);
  EXPECT_GT(rate, 0.8e6) << rows.at(4);
  EXPECT_LT(rate, 1.2e6) << rows.at(4);
  // It must quit now, not after the ten-second timeout of the call.
  const double pressed = moment_now();
  terminal_press(one, "q");
  EXPECT_EQ(terminal_finish(one), 0);
  EXPECT_LT(moment_now() - pressed, 5);
  fake_daemon_stop(slow.daemon);
}

// No single call of the sixteen is slow, but together they are.
TEST(Terminal, TopSaysWhatItWaitsForWhereManyCallsTakeTheirTime) {
  fake_daemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    moment_sleep_until(moment_now() + 0.12);
    return std::vector<fake_datagram>{{station_reply(call, 1)}};
  });
  terminal one;
  terminal_start(one, daemon.port, {"top"}, 24, 80);
  EXPECT_TRUE(terminal_read_until(
      one, [&] { return one.shown.find("waiting for BSS ") != std::string::npos; }));
  terminal_press(one, "q");
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(daemon);
}

// Every BSS answers with a failure code, as before the drivers are loaded.
TEST(Terminal, TopSaysThatNoRadioIsUp) {
  fake_daemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    byte_string reply = fake_reply(call, 0, {0xffffffff, 0});
    xdr_put_opaque(reply, std::string(2436, '\0'));
    return std::vector<fake_datagram>{{reply}};
  });
  terminal one;
  terminal_start(one, daemon.port, {"top", "--count", "1"}, 24, 80, "dumb");
  EXPECT_EQ(terminal_finish(one), 1);
  fake_daemon_stop(daemon);
  EXPECT_NE(one.shown.find("no radio is up"), std::string::npos) << one.shown;
}
