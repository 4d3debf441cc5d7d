// The portmapper of a box: the host's rpcbind under the name that a gateway gives it, so that
// `pgrep portmap` finds it.
#pragma once

#include <sys/types.h>

// Starts it inside the box; returns its pid, or -1 after a report. It is not yet answering.
[[nodiscard]] pid_t portmap_start();

// Waits until it answers a call on UDP port 111. Reports and returns false when it ends or does
// not answer within five seconds.
[[nodiscard]] bool portmap_await(pid_t pid);
