#include "datagram_daemon.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

static sockaddr_un address_of(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  EXPECT_LE(path.size(), sizeof address.sun_path);
  memcpy(address.sun_path, path.data(), path.size());
  return address;
}

int listen_on(const std::string& path) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  unlink(path.c_str());
  const sockaddr_un address = address_of(path);
  const int sock = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  EXPECT_EQ(bind(sock, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0) << path;
  return sock;
}

int send_to_path(int sock, const std::string& path, const std::string& datagram) {
  const sockaddr_un address = address_of(path);
  const ssize_t sent = sendto(sock, datagram.data(), datagram.size(), MSG_DONTWAIT,
                              reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return sent < 0 ? errno : 0;
}

static void serve_one(datagram_daemon* daemon) {
  char bytes[8192];
  sockaddr_un from = {};
  socklen_t from_size = sizeof from;
  const ssize_t length = recvfrom(daemon->sock, bytes, sizeof bytes, 0,
                                  reinterpret_cast<sockaddr*>(&from), &from_size);
  ASSERT_GE(length, 0);
  const size_t number = daemon->requests.size();
  daemon->requests.emplace_back(bytes, static_cast<size_t>(length));
  if (number >= daemon->replies.size() || !daemon->replies[number].has_value()) return;
  const std::string& reply = *daemon->replies[number];
  EXPECT_EQ(sendto(daemon->sock, reply.data(), reply.size(), 0, reinterpret_cast<sockaddr*>(&from),
                   from_size),
            static_cast<ssize_t>(reply.size()));
}

static void serve(datagram_daemon* daemon) {
  pollfd readable = {daemon->sock, POLLIN, 0};
  while (true) {
    // Read before poll(), so that datagrams sent before the end are still served.
    const bool ending = daemon->ending;
    if (poll(&readable, 1, ending ? 0 : 5) > 0)
      serve_one(daemon);
    else if (ending)
      return;
  }
}

void start_datagram_daemon(const std::string& path,
                           const std::vector<std::optional<std::string>>& replies,
                           datagram_daemon* daemon) {
  daemon->sock = listen_on(path);
  daemon->replies = replies;
  daemon->requests.clear();
  daemon->ending = false;
  daemon->thread = std::thread(serve, daemon);
}

std::vector<std::string> end_datagram_daemon(datagram_daemon* daemon) {
  daemon->ending = true;
  daemon->thread.join();
  close(daemon->sock);
  return daemon->requests;
}

int start_stuck_daemon(const std::string& path) {
  const int sock = listen_on(path);
  const int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  int error = 0;
  for (int i = 0; i < 100000 && error == 0; ++i) {
    error = send_to_path(sender, path, "x");
  }
  EXPECT_EQ(error, EAGAIN);
  close(sender);
  return sock;
}

std::string little_endian(const std::vector<int64_t>& numbers) {
  std::string bytes;
  for (const int64_t number : numbers) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes += static_cast<char>(number >> shift);
    }
  }
  return bytes;
}
