#include "fake_daemon.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

static int bound_socket(uint16_t* port) {
  int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  EXPECT_EQ(bind(fd, generic, length), 0);
  EXPECT_EQ(getsockname(fd, generic, &length), 0);
  *port = ntohs(address.sin_port);
  return fd;
}

// Answers one call; false if there is none.
static bool serve_one(fake_daemon& daemon) {
  byte_string call(65536);
  sockaddr_in from{};
  socklen_t length = sizeof from;
  auto* generic = reinterpret_cast<sockaddr*>(&from);
  ssize_t size = recvfrom(daemon.socket, call.data(), call.size(), 0, generic, &length);
  if (size < 0) return false;
  call.resize(static_cast<size_t>(size));
  daemon.calls.push_back(call);
  for (const fake_datagram& datagram : daemon.script(call)) {
    int fd = datagram.from_elsewhere ? daemon.other_socket : daemon.socket;
    sendto(fd, datagram.bytes.data(), datagram.bytes.size(), 0, generic, length);
  }
  return true;
}

static void serve(fake_daemon& daemon) {
  while (true) {
    pollfd fds[] = {{daemon.socket, POLLIN, 0}, {daemon.stop_event, POLLIN, 0}};
    poll(fds, 2, -1);
    while (serve_one(daemon)) {
    }
    if (fds[1].revents != 0) return;
  }
}

void fake_daemon_start(fake_daemon& daemon, fake_script script) {
  uint16_t other_port = 0;
  daemon.socket = bound_socket(&daemon.port);
  daemon.other_socket = bound_socket(&other_port);
  daemon.stop_event = eventfd(0, EFD_CLOEXEC);
  daemon.script = std::move(script);
  daemon.thread = std::thread([&daemon] { serve(daemon); });
}

void fake_daemon_stop(fake_daemon& daemon) {
  eventfd_write(daemon.stop_event, 1);
  daemon.thread.join();
  close(daemon.socket);
  close(daemon.other_socket);
  close(daemon.stop_event);
}

uint16_t fake_closed_port() {
  uint16_t port = 0;
  close(bound_socket(&port));
  return port;
}

byte_string fake_reply(const byte_string& call, uint32_t state,
                       const std::vector<uint32_t>& words) {
  byte_string reply(call.begin(), call.begin() + 4);
  for (uint32_t word : {1u, 0u, 0u, 0u, state})
    xdr_put_word(reply, word);
  for (uint32_t word : words)
    xdr_put_word(reply, word);
  return reply;
}
