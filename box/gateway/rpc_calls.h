// The calls that the daemon is working on, seen on the wire: the box reads what passes its loopback
// interface to and from the daemon's port.
#pragma once

#include <cstdint>

#include <deque>

#include "base/journal.h"

struct procedure_row;

struct rpc_call {
  uint32_t xid;
  uint32_t procedure;
  const procedure_row* row;  // null: not one of the program's
};

struct rpc_calls {
  int fd;                     // packet socket, or -1: no call is ever known
  std::deque<rpc_call> open;  // arrived and not answered, oldest first: the daemon's order
  rpc_call queued;            // the last that queued work for the daemon's worker
  bool has_queued;
  journal_cause worker;  // what the worker is doing was queued by
  // Causes of messages to the controller that rpc_calls_controller has not been asked for.
  std::deque<journal_cause> to_controller;
};

// Begins to listen. A box whose kernel does not allow it runs all the same: this is no error.
void rpc_calls_open(rpc_calls& calls);

// Reads what has passed since. The packets of a call are readable before the daemon can see it.
void rpc_calls_catch_up(rpc_calls& calls);

// The call that the daemon's first thread is working on, or an empty cause. Calls that nobody
// received, since the daemon did not listen yet, are forgotten with the next that it works on.
journal_cause rpc_calls_current(rpc_calls& calls);

// The worker takes the next request: from now on that one is what it does.
void rpc_calls_worker_begins(rpc_calls& calls);

// The cause of the next message to the home network controller, in the order that they were sent.
journal_cause rpc_calls_controller(rpc_calls& calls);

// Whether a call waits for the daemon to receive it.
bool rpc_calls_wait();

// The daemon is idle and no call waits: none of them will be answered any more.
void rpc_calls_settle(rpc_calls& calls);

// The daemon has ended, and with it what it was asked to do.
void rpc_calls_forget(rpc_calls& calls);
