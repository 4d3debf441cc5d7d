#include "watch.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <cstdio>
#include <cstring>

#include <fstream>
#include <sstream>

using nlohmann::json;

static constexpr int kStepMs = 2;
static constexpr int kSteps = 3000 / kStepMs;

bool wait_until(const std::function<bool()>& condition) {
  for (int i = 0; i < kSteps; ++i) {
    if (condition()) return true;
    poll(nullptr, 0, kStepMs);
  }
  return false;
}

std::vector<json> records(const std::string& path) {
  std::vector<json> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    lines.push_back(json::parse(line, nullptr, false));
    EXPECT_TRUE(lines.back().is_object()) << line;
  }
  return lines;
}

std::vector<json> await_records(const std::string& path, size_t count) {
  EXPECT_TRUE(wait_until([&] { return records(path).size() >= count; })) << path;
  return records(path);
}

void write_file(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::trunc);
  file << text << std::flush;
  EXPECT_TRUE(file.good()) << path;
}

std::string read_file(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

void tell_companions(const json& companions) {
  write_file("/run/gwbox/scenario.json", json{{"companions", companions}}.dump());
}

int connect_datagram(const std::string& path) {
  static int count = 0;
  sockaddr_un own = {}, other = {};
  own.sun_family = other.sun_family = AF_UNIX;
  snprintf(own.sun_path, sizeof own.sun_path, "/tmp/client.%d.%d", getpid(), ++count);
  strncpy(other.sun_path, path.c_str(), sizeof other.sun_path - 1);
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&own), sizeof own), 0);
  bool there = wait_until(
      [&] { return connect(fd, reinterpret_cast<sockaddr*>(&other), sizeof other) == 0; });
  EXPECT_TRUE(there) << path;
  return there ? fd : -1;
}

std::string ask(int fd, const std::string& request, double seconds) {
  char answer[16384];
  EXPECT_EQ(send(fd, request.data(), request.size(), 0), static_cast<ssize_t>(request.size()));
  pollfd readable = {fd, POLLIN, 0};
  if (poll(&readable, 1, static_cast<int>(seconds * 1000)) <= 0) return "";
  ssize_t got = recv(fd, answer, sizeof answer, 0);
  return got > 0 ? std::string(answer, static_cast<size_t>(got)) : "";
}
