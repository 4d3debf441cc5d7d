// The box's end of its control socket, see connection.h.
#pragma once

#include <vector>

#include "gateway/conditions.h"
#include "gateway/state.h"

// Returns the listening descriptor, or -1 after a report.
[[nodiscard]] int control_listen();

// Accepts one client of LISTENER and returns its descriptor, or -1 if there is none.
int control_accept(int listener);

// A client that waits for something.
struct control_waiter {
  int client;
  condition wanted;
  int64_t until_us;  // monotonic
};

// Reads the client's message, carries it out, answers and closes CLIENT; or puts it among WAITERS.
void control_serve(int client, trap_state& trap, std::vector<control_waiter>& waiters);

// Answers and closes those whose condition holds, or whose time is over. Returns milliseconds until
// the next look, -1 if nobody waits.
int control_answer_waiters(std::vector<control_waiter>& waiters, trap_state& trap);
