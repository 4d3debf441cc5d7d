// The box's side of its control socket, see connection.h.
#pragma once

#include "gateway/state.h"

// Returns the listening descriptor, or -1 after a report.
[[nodiscard]] int control_listen();

// Accepts one client of LISTENER; its descriptor, or -1 when there is none after all.
int control_accept(int listener);

// Reads the client's message, does what it asks, answers and closes CLIENT.
void control_serve(int client, trap_state& trap);
