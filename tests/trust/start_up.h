#pragma once

#include "trust/sweep.h"

// Fails the outside calls and allocations of a starting daemon, from main() to the wait
// for requests, those of a supervisor whose child has died, and the wait itself.
// Afterwards the daemon serves, with its first child or another one, or has exited with a
// status.

std::vector<tally> sweep_start_up(extent how_much);
