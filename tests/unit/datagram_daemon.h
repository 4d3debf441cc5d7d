#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// A test's own daemon on a UNIX datagram socket. It answers each request with the next of
// its replies, where nullopt means silence. After the last one it keeps receiving without
// answering.

struct datagram_daemon {
  int sock = -1;
  std::vector<std::optional<std::string>> replies;
  std::vector<std::string> requests;
  std::thread thread;
  std::atomic<bool> ending;
};

// Starts the daemon and creates the directories of the path.
void start_datagram_daemon(const std::string& path,
                           const std::vector<std::optional<std::string>>& replies,
                           datagram_daemon* daemon);

// Ends the daemon after it has received everything sent to it. Returns the requests.
std::vector<std::string> end_datagram_daemon(datagram_daemon* daemon);

// A bound socket that nobody reads from and whose queue is full. Returns its descriptor,
// which stays open.
int start_stuck_daemon(const std::string& path);

// Sends one datagram to a path and returns 0 or errno.
int send_to_path(int sock, const std::string& path, const std::string& datagram);

// A bound UNIX datagram socket.
int listen_on(const std::string& path);

// How many seconds the function takes.
template <typename Function>
double seconds_of(Function function) {
  const auto start = std::chrono::steady_clock::now();
  function();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// 32-bit numbers as little-endian bytes.
std::string little_endian(const std::vector<int64_t>& numbers);
