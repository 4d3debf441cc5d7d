#pragma once

#include <cstdint>
#include <string>

#include "trust/tracee.h"

// Calls to a traced daemon, which finds the gateway in the same state before each.

// A call with its encoded arguments.
struct request {
  uint32_t procedure;
  std::string arguments;
};

struct answer {
  stand how;
  bool came;
  uint32_t accepted;  // status of an accepted reply
  int32_t code;       // the first word of its result
};

// Starts the daemon; the "sleep" of its shell commands returns at once.
void start_daemon_process();

// Starts the daemon without failures and waits until it is quiet. Otherwise prints why it
// is not and returns false.
[[nodiscard]] bool start_daemon_traced();

// Sends the request and lets the daemon run until it is quiet again.
answer serve(const request& wanted);

// The same without failures, to prepare for another call.
answer serve_undisturbed(const request& wanted);

[[nodiscard]] bool answers_null();

// Loads and initializes, and starts what the procedures talk to. Does only what has not
// been done since the service child started.
void bring_up();

// Keeps the profiles, with mirrors that match them, and a marker file; restores them.
void keep_gateway();
void restore_gateway();

// Fills the profile so that sequences and procedures have much to do.
void furnish_profiles();

// Switches the daemon's traces and its log.
void set_traces(bool on);
