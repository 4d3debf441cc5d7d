// A daemon for the client's tests: answers calls on a port of 127.0.0.1 by a
// script, in a thread of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

#include "wire/xdr.h"

struct Datagram {
  byte_string bytes;
  bool from_elsewhere = false;  // sent from another port than was called
};

// Given a call, the datagrams to answer with, in order.
using Script = std::function<std::vector<Datagram>(const byte_string& call)>;

struct FakeDaemon {
  uint16_t port = 0;
  int socket = -1, other_socket = -1, stop_event = -1;
  Script script;
  std::thread thread;
  std::vector<byte_string> calls;  // the thread's until it is stopped
};

void fake_daemon_start(FakeDaemon& daemon, Script script);

// Ends the thread after it has read everything that was sent to it: `calls` is
// then all of it.
void fake_daemon_stop(FakeDaemon& daemon);

// A port of 127.0.0.1 on which nothing listens.
uint16_t fake_closed_port();

// Reply to `call`: accepted with this state, then the words.
byte_string fake_reply(const byte_string& call, uint32_t state, const std::vector<uint32_t>& words);
