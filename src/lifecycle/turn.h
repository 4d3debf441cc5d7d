#pragma once

#include <atomic>

// The sequences run one at a time: each takes the turn for as long as it lasts.
// So a request on the worker and a reset on the RPC thread never mix, and
// modules, interfaces and flags agree whenever nobody has the turn.

// A kind of request is running. Changed with set_running by the thread that has
// the turn; read by the other one too.
extern std::atomic<bool> init_running;
extern std::atomic<bool> load_running;
extern std::atomic<bool> reset_running;
extern std::atomic<bool> restart_running;

// Changes one of them; a reset that waits for the turn looks at them again.
void set_running(std::atomic<bool>* kind, bool running);

// Waits until the turn is free and takes it.
void begin_turn();
void end_turn();

// Takes the turn for a reset and returns null. While an init or a restart runs,
// and as soon as whoever has the turn begins one, returns "init" or "restart"
// without the turn; any other turn, such as a load's, is waited out.
[[nodiscard]] const char* begin_reset_turn();
