// A program on a pseudo-terminal, and a daemon that has stations for it.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "base/moment.h"
#include "fake_daemon.h"

struct terminal {
  pid_t pid = -1;
  int fd = -1;
  std::string shown;  // all output so far
};

struct station_daemon {
  fake_daemon daemon;
  uint32_t samples = 0;
};

inline constexpr char kTerminalRedraw[] = "\033[H\033[J";
inline constexpr char kTerminalClear[] = "\033[H\033[2J";
inline constexpr char kTerminalLeave[] = "\033[?1049l";

// Reads until the condition holds. False on timeout or at the end.
template <typename Condition>
bool terminal_read_until(terminal& one, Condition holds) {
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

void terminal_start(terminal& one, uint16_t port, std::vector<std::string> words,
                    unsigned short rows, unsigned short columns, const char* name = "xterm");

// Reads to the end. Returns the exit status, or -1 if the program was killed.
int terminal_finish(terminal& one);

std::vector<std::string> terminal_split(const std::string& text, const std::string& at);

// Two stations on BSS 1. The second sends more than the first from call to call.
byte_string station_reply(const byte_string& call, uint32_t samples);

void station_daemon_start(station_daemon& one);

bool terminal_has_keys_by_line(int fd);

bool terminal_soon_has_keys_by_line(int fd);

// The rows of the last complete frame, which the screen shows.
std::vector<std::string> terminal_last_frame(const terminal& one);

bool terminal_soon_shows(terminal& one, const std::string& text);

void terminal_press(const terminal& one, const std::string& keys);
