#pragma once

#include <atomic>

// The sequences run one at a time: each holds the turn for its whole duration. A request
// on the worker and a reset on the RPC thread therefore never mix, and modules,
// interfaces and flags are consistent whenever the turn is free.

// Changes a running flag of the lifecycle record. Called by the thread that has the turn;
// wakes a reset that waits for it.
void set_running(std::atomic<bool>* kind, bool running);

void begin_turn();
void end_turn();

// Takes the turn for a reset and returns null. If an init or a restart runs, or starts
// during the wait, returns "init" or "restart" without the turn. Any other turn, such as
// a load's, is waited for.
[[nodiscard]] const char* begin_reset_turn();
