#pragma once

#include <cstdint>
#include <string>

#include "trust/tracee.h"

// Calls of a traced daemon, and a gateway that it finds the same before each.

// One call with its bytes ready.
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

// Starts the daemon, with the "sleep" of its commands cut short.
void start_daemon_process();

// Starts it undisturbed and waits until it is quiet. False when it is not, reported.
[[nodiscard]] bool start_daemon_traced();

// Sends the request and lets the daemon go until it is quiet again.
answer serve(const request& wanted);

// The same without failures to come, for what has to be in place before.
answer serve_undisturbed(const request& wanted);

// Whether the daemon answers a NULL call.
[[nodiscard]] bool answers_null();

// Loads and initializes, and starts what the procedures talk to, as far as that has
// not happened in the service child that there is.
void bring_up();

// Profiles, mirrors and marker files as bring_up() or keep_gateway() found them.
void keep_gateway();
void restore_gateway();

// Sets the profile so that the sequences and procedures have much to do.
void furnish_profiles();

// The daemon's traces and its log, on or off.
void set_traces(bool on);
