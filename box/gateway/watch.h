// Calls that the box only looks at: what is executed, signalled and ended, and who is about to
// change a file or an interface. The kernel carries them out.
#pragma once

#include "gateway/call.h"

// Takes a look at the call. The caller waits meanwhile.
void watch_call(trap_state& trap, const trap_call& c);

// An interface is about to be set up or down by that call.
void watch_interface_flags(trap_state& trap, const trap_call& c);

// Tells the processes that were killed, which made no call about it.
void watch_ended(trap_state& trap);
