// The box's end of its control socket, see connection.h.
#pragma once

#include "gateway/state.h"

// Returns the listening descriptor, or -1 after a report.
[[nodiscard]] int control_listen();

// Accepts one client of LISTENER and returns its descriptor, or -1 if there is none.
int control_accept(int listener);

// Reads the client's message, carries it out, answers and closes CLIENT.
void control_serve(int client, trap_state& trap);
