// "watch", completion and job control on a pseudo-terminal.
#include "terminal_support.h"

#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>

// Types `line` and Enter in the shell; a tab in it completes. True if the client is then called
// with the words.
static bool calls(terminal& one, const std::string& line, const std::string& words) {
  const std::string typed = line + "\r";
  EXPECT_EQ(write(one.fd, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  return terminal_read_until(
      one, [&] { return one.shown.find("<" + words + ">") != std::string::npos; });
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
  EXPECT_TRUE(terminal_read_until(one, [&] {
    return one.shown.find("ready") != std::string::npos;
  })) << one.shown;
  unlink(path.c_str());
}

static void expect_completed(const std::vector<std::string>& shell, const std::string& setup) {
  terminal one;
  start_shell(one, shell, setup);
  EXPECT_TRUE(calls(one, "wificonf wlan_get_btm_a\t", "wlan_get_btm_associated_device"));
  EXPECT_TRUE(calls(one, "wificonf --host=h wlan-set-btm\t1", "--host=h wlan_set_btm_enable 1"));
  EXPECT_TRUE(calls(one, "wificonf watch --f\tHNC-GET-RRM\t", "watch --force hnc_get_rrm_enable"));
  EXPECT_EQ(write(one.fd, "exit 0\r", 7), 7);
  EXPECT_EQ(terminal_finish(one), 0) << one.shown;
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
  station_daemon_start(stations);
  for (const char* command : {"top", "watch"}) {
    terminal one;
    std::vector<std::string> words = {command, "--count", "1"};
    if (words[0] == "watch") words.insert(words.end(), {"wlan_get_btm_associated_device", "1"});
    terminal_start(one, stations.daemon.port, words, 24, 80, "dumb");
    EXPECT_EQ(terminal_finish(one), 0);
    EXPECT_NE(one.shown.find("02:00:00:00:00:01"), std::string::npos) << one.shown;
    EXPECT_EQ(one.shown.find('\033'), std::string::npos) << one.shown;
  }
  fake_daemon_stop(stations.daemon);
}

TEST(Terminal, WatchRedrawsWithinTheScreen) {
  fake_daemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    byte_string reply = fake_reply(call, 0, {0, 16});
    for (int i = 0; i < 17; ++i)
      xdr_put_word(reply, 0);
    return std::vector<fake_datagram>{{reply}};
  });
  terminal one;
  terminal_start(one, daemon.port,
                 {"watch", "wlan_get_stats", "1", "1", "--count", "2", "--every", "20ms"}, 8, 70);
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(daemon);
  const std::vector<std::string> frames = terminal_split(one.shown, kTerminalClear);
  ASSERT_EQ(frames.size(), 3u) << one.shown;
  EXPECT_EQ(frames[0], "");
  for (const std::string& frame : {frames[1], frames[2]}) {
    const std::vector<std::string> lines = terminal_split(frame, "\r\n");
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
  fake_daemon daemon;
  fake_daemon_start(daemon, [](const byte_string& call) {
    return std::vector<fake_datagram>{{fake_reply(call, 0, {0, 4, 6, 0, 0, 0, 0})}};
  });
  for (const char* every : {"24h", "20ms"}) {
    terminal one;
    terminal_start(one, daemon.port, {"watch", "wlan_get_current_channel", "1", "--every", every},
                   24, 80);
    EXPECT_TRUE(
        terminal_read_until(one, [&] { return one.shown.find("\n6\r\n") != std::string::npos; }));
    EXPECT_FALSE(terminal_has_keys_by_line(one.fd));
    terminal_press(one, "xq");
    EXPECT_EQ(terminal_finish(one), 0);
  }
  fake_daemon_stop(daemon);
}

TEST(Terminal, WatchSaysOnItsScreenWhyThereIsNoAnswer) {
  terminal one;
  terminal_start(one, fake_closed_port(),
                 {"watch", "wlan_get_channel", "1", "--count", "2", "--every", "20ms"}, 24, 80);
  EXPECT_EQ(terminal_finish(one), 3);
  const std::vector<std::string> frames = terminal_split(one.shown, kTerminalClear);
  ASSERT_EQ(frames.size(), 3u) << one.shown;
  EXPECT_EQ(frames[0], "");
  EXPECT_NE(frames[2].find("nothing listens"), std::string::npos) << frames[2];
}

// The first answer comes late, the second never.
TEST(Terminal, WatchSaysThatItWaits) {
  fake_daemon daemon;
  int calls = 0;
  fake_daemon_start(daemon, [&calls](const byte_string& call) -> std::vector<fake_datagram> {
    if (calls++ > 0) return {};
    moment_sleep_until(moment_now() + 1.5);
    return {{fake_reply(call, 0, {0, 4, 6, 0, 0, 0, 0})}};
  });
  terminal one;
  terminal_start(one, daemon.port, {"watch", "wlan_get_current_channel", "1", "--every", "20ms"},
                 24, 80);
  const auto shows = [&](const std::string& text) {
    return terminal_read_until(one, [&] { return one.shown.find(text) != std::string::npos; });
  };
  EXPECT_TRUE(shows("waiting for an answer, 1 s so far\r\n")) << one.shown;
  EXPECT_TRUE(shows("waiting for an answer, 1 s so far; what is shown is 1 s old\r\n\r\n6\r\n"))
      << one.shown;
  terminal_press(one, "q");
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(daemon);
}

// Stopped from the keyboard, it gives the terminal back. It takes it again when continued.
TEST(Terminal, TopCanBeStoppedAndGoesOn) {
  station_daemon stations;
  station_daemon_start(stations);
  terminal one;
  start_shell(one, {"bash", "--norc", "--noprofile"}, "");
  terminal_press(one, "command wificonf --host 127.0.0.1 --port " +
                          std::to_string(stations.daemon.port) + " top --every 20ms\r");
  EXPECT_TRUE(terminal_read_until(one, [&] {
    return terminal_split(one.shown, kTerminalRedraw).size() > 2;
  })) << one.shown;
  terminal_press(one, "\032");
  EXPECT_TRUE(terminal_read_until(one, [&] {
    return one.shown.find("Stopped") != std::string::npos;
  })) << one.shown;
  EXPECT_NE(one.shown.find(kTerminalLeave), std::string::npos) << one.shown;
  const size_t stopped = one.shown.size();
  terminal_press(one, "fg\r");
  EXPECT_TRUE(terminal_read_until(
      one, [&] { return terminal_split(one.shown.substr(stopped), kTerminalRedraw).size() > 2; }));
  terminal_press(one, "q");
  EXPECT_TRUE(terminal_read_until(
      one, [&] { return one.shown.find(kTerminalLeave, stopped) != one.shown.npos; }));
  terminal_press(one, "exit 0\r");
  EXPECT_EQ(terminal_finish(one), 0);
  fake_daemon_stop(stations.daemon);
}
