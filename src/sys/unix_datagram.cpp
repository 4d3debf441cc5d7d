#include "sys/unix_datagram.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sys/planted.h"

static sockaddr_un address_of(const char* path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  memcpy(address.sun_path, path, strnlen(path, sizeof address.sun_path));
  return address;
}

int unix_datagram_socket() {
  return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

int unix_datagram_bind(int sock, const char* path) {
  const sockaddr_un address = address_of(path);
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (bind(sock, generic, sizeof address) == 0) return 0;
  if (errno != EADDRINUSE) return -1;
  if (unlink(path) != 0) planted_remove(path);
  return bind(sock, generic, sizeof address);
}

int unix_datagram_connect(int sock, const char* path) {
  const sockaddr_un address = address_of(path);
  return connect(sock, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int unix_datagram_send(int sock, const void* datagram, size_t size, int timeout_ms) {
  if (send(sock, datagram, size, 0) >= 0) return 0;
  if (errno != EAGAIN || timeout_ms == 0) return -1;
  pollfd writable = {sock, POLLOUT, 0};
  if (poll(&writable, 1, timeout_ms) < 0) return -1;
  return send(sock, datagram, size, 0) >= 0 ? 0 : -1;
}

ssize_t unix_datagram_receive(int sock, void* buffer, size_t size, int timeout_ms) {
  pollfd readable = {sock, POLLIN, 0};
  const int ready = poll(&readable, 1, timeout_ms);
  if (ready == 0) return kDatagramTimeout;
  return ready < 0 ? -1 : recv(sock, buffer, size, 0);
}

void unix_datagram_discard(int sock) {
  char byte;
  for (int i = 0; i < kDiscardMax && recv(sock, &byte, sizeof byte, 0) >= 0; ++i) {
  }
}

void unix_datagram_close(int sock, const char* path) {
  if (path != nullptr) unlink(path);
  close(sock);
}
