#pragma once

#include "trust/sweep.h"

// Fails the outside calls and allocations of a daemon that starts, from main() to the
// wait for requests; of a supervisor whose child has died; and the wait itself. The
// daemon serves afterwards, with its first child or another one, or it ends with a
// status of its own.

std::vector<tally> sweep_start_up(extent how_much);
