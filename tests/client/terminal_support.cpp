#include "terminal_support.h"

#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>

void terminal_start(terminal& one, uint16_t port, std::vector<std::string> words,
                    unsigned short rows, unsigned short columns, const char* name) {
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

int terminal_finish(terminal& one) {
  const double started = moment_now();
  terminal_read_until(one, [] { return false; });
  if (moment_now() - started >= 20) kill(one.pid, SIGKILL);
  int status = 0;
  EXPECT_EQ(waitpid(one.pid, &status, 0), one.pid);
  close(one.fd);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<std::string> terminal_split(const std::string& text, const std::string& at) {
  std::vector<std::string> parts;
  size_t from = 0;
  for (size_t end = text.find(at); end != std::string::npos; end = text.find(at, from)) {
    parts.push_back(text.substr(from, end - from));
    from = end + at.size();
  }
  parts.push_back(text.substr(from));
  return parts;
}

byte_string station_reply(const byte_string& call, uint32_t samples) {
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

void station_daemon_start(station_daemon& one) {
  fake_daemon_start(one.daemon, [&one](const byte_string& call) {
    if (call[43] == 1) one.samples++;
    return std::vector<fake_datagram>{{station_reply(call, one.samples)}};
  });
}

bool terminal_has_keys_by_line(int fd) {
  termios settings{};
  tcgetattr(fd, &settings);
  return (settings.c_lflag & ICANON) != 0 && (settings.c_lflag & ECHO) != 0;
}

bool terminal_soon_has_keys_by_line(int fd) {
  const double deadline = moment_now() + 20;
  while (!terminal_has_keys_by_line(fd) && moment_now() < deadline)
    moment_sleep_until(moment_now() + 0.005);
  return terminal_has_keys_by_line(fd);
}

std::vector<std::string> terminal_last_frame(const terminal& one) {
  return terminal_split(terminal_split(one.shown, kTerminalRedraw).back(), "\r\n");
}

bool terminal_soon_shows(terminal& one, const std::string& text) {
  return terminal_read_until(
      one, [&] { return terminal_last_frame(one)[0].find(text) != std::string::npos; });
}

void terminal_press(const terminal& one, const std::string& keys) {
  EXPECT_EQ(write(one.fd, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}
