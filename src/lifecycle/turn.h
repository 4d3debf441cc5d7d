#pragma once

#include <atomic>

// The sequences run one at a time: each takes the turn for as long as it lasts.
// So a request on the worker and a reset on the RPC thread never mix, and
// modules, interfaces and flags agree whenever nobody has the turn.

// Changes a running flag of the lifecycle record, by the thread that has the turn;
// a reset that waits for the turn looks at them again.
void set_running(std::atomic<bool>* kind, bool running);

// Waits until the turn is free and takes it.
void begin_turn();
void end_turn();

// Takes the turn for a reset and returns null. While an init or a restart runs,
// and as soon as whoever has the turn begins one, returns "init" or "restart"
// without the turn; any other turn, such as a load's, is waited out.
[[nodiscard]] const char* begin_reset_turn();
