#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// A daemon on a UNIX datagram socket that a test makes up. It answers each
// request with the next of its replies, by silence where there is none, and
// keeps on listening without an answer when they are used up.

struct datagram_daemon {
  int sock = -1;
  std::vector<std::optional<std::string>> replies;
  std::vector<std::string> requests;
  std::thread thread;
  std::atomic<bool> ending;
};

// Starts it; the directories of the path are made.
void start_datagram_daemon(const std::string& path,
                           const std::vector<std::optional<std::string>>& replies,
                           datagram_daemon* daemon);

// Ends it once it has taken what was sent to it. Returns the requests.
std::vector<std::string> end_datagram_daemon(datagram_daemon* daemon);

// A bound socket that nobody reads from, its path connected to until no more
// datagrams fit. The descriptor stays open.
int start_stuck_daemon(const std::string& path);

// Sends one datagram from a bound socket to a path; 0, or errno.
int send_to_path(int sock, const std::string& path, const std::string& datagram);

// A bound UNIX datagram socket.
int listen_on(const std::string& path);

// Seconds that the function takes.
template <typename Function>
double seconds_of(Function function) {
  const auto start = std::chrono::steady_clock::now();
  function();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The bytes of 32-bit numbers, low byte first.
std::string little_endian(const std::vector<int64_t>& numbers);
