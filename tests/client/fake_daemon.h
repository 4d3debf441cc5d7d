// A scripted daemon for the client's tests. It answers calls on a port of 127.0.0.1 in a thread
// of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

#include "wire/xdr.h"

struct fake_datagram {
  byte_string bytes;
  bool from_elsewhere = false;  // sent from a port other than the one called
};

// Returns the datagrams that answer a call, in order.
using fake_script = std::function<std::vector<fake_datagram>(const byte_string& call)>;

struct fake_daemon {
  uint16_t port = 0;
  int socket = -1, other_socket = -1, stop_event = -1;
  fake_script script;
  std::thread thread;
  std::vector<byte_string> calls;  // owned by the thread until it is stopped
};

void fake_daemon_start(fake_daemon& daemon, fake_script script);

// Ends the thread after it has read everything sent to it, so that `calls` is complete.
void fake_daemon_stop(fake_daemon& daemon);

// A port of 127.0.0.1 on which nothing listens.
uint16_t fake_closed_port();

// A reply to `call`: accepted with this state, then the words.
byte_string fake_reply(const byte_string& call, uint32_t state, const std::vector<uint32_t>& words);
