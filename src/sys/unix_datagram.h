#pragma once

#include <sys/types.h>

#include <cstddef>

// Datagram sockets to the box's other processes (UNIX domain). A path of more
// than 108 characters, which is what the kernel takes, is cut to 108. Functions
// return -1 with errno set when they fail; none waits longer than it is told.

// A socket without address and peer.
[[nodiscard]] int unix_datagram_socket();

// Binds it to a path. What an earlier process left there is removed, but for a
// directory that is not another user's.
[[nodiscard]] int unix_datagram_bind(int sock, const char* path);

// Connects it; from here on only this peer reaches it. 0, or -1.
[[nodiscard]] int unix_datagram_connect(int sock, const char* path);

// Sends one datagram. When the peer's queue is full it waits up to
// `timeout_ms` for room and then fails with EAGAIN. 0, or -1.
constexpr int kRoomTimeoutMs = 2000;  // for a companion that does not take its datagrams
[[nodiscard]] int unix_datagram_send(int sock, const void* datagram, size_t size, int timeout_ms);

// Waits up to `timeout_ms` for a datagram and copies as much of it as `size`
// bytes take. Returns how many were copied, -1, or -2 when none came.
constexpr ssize_t kDatagramTimeout = -2;
[[nodiscard]] ssize_t unix_datagram_receive(int sock, void* buffer, size_t size, int timeout_ms);

// Drops what has arrived so far, at most kDiscardMax datagrams: a peer that
// sends without pause does not hold the caller.
constexpr int kDiscardMax = 64;
void unix_datagram_discard(int sock);

// Closes it. Removes the path that it was bound to, null for none, first.
void unix_datagram_close(int sock, const char* path);
