// The portmapper of a box: the host's rpcbind under the name that a gateway gives it, so that
// `pgrep portmap` finds it. Its output is in kPortmapLog, as is what it sends to the system log
// while it starts.
#pragma once

#include <sys/types.h>

constexpr const char* kPortmapLog = "/run/gwbox/portmap.log";  // inside the box

struct portmap {
  pid_t pid;       // 0: none
  int system_log;  // receives messages for the system log until it answers
};

// Starts it inside the box; does not wait until it answers. Reports what failed and returns false.
[[nodiscard]] bool portmap_start(portmap& p);

// Waits until it answers a call on UDP port 111. If it ends or does not answer within five seconds,
// reports that with its last lines and returns false.
[[nodiscard]] bool portmap_await(portmap& p);

// Reports how it ended, with its last lines. STATUS: as waitpid gives it.
void portmap_report_end(int status);
