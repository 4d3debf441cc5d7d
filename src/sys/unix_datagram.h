#pragma once

#include <sys/types.h>

#include <cstddef>

// Datagram sockets to the box's other processes (UNIX domain). A path is cut to 108
// characters, the kernel's limit. Functions return -1 with errno on failure; none waits
// longer than its time-out.

// An unbound, unconnected socket.
[[nodiscard]] int unix_datagram_socket();

// Binds it to a path. Whatever an earlier process left there is removed, except a
// directory of our own.
[[nodiscard]] int unix_datagram_bind(int sock, const char* path);

// Connects it; from then on only this peer reaches it. 0, or -1.
[[nodiscard]] int unix_datagram_connect(int sock, const char* path);

// Sends one datagram. When the peer's queue is full, waits up to `timeout_ms` for room,
// then fails with EAGAIN. 0, or -1.
constexpr int kRoomTimeoutMs = 2000;  // for a companion that does not read its datagrams
[[nodiscard]] int unix_datagram_send(int sock, const void* datagram, size_t size, int timeout_ms);

// Waits up to `timeout_ms` for a datagram and copies at most `size` bytes of it. Returns
// how many were copied, -1, or kDatagramTimeout when none came.
constexpr ssize_t kDatagramTimeout = -2;
[[nodiscard]] ssize_t unix_datagram_receive(int sock, void* buffer, size_t size, int timeout_ms);

// Drops what has arrived so far, at most kDiscardMax datagrams, so that a peer that sends
// without pause does not hold the caller.
constexpr int kDiscardMax = 64;
void unix_datagram_discard(int sock);

// Closes it, after removing the path that it was bound to (null: none).
void unix_datagram_close(int sock, const char* path);
