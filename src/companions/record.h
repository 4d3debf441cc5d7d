#pragma once

#include <pthread.h>

// A process that runs alongside the driver, started once and killed by name.
struct companion {
  const char* control;  // name of its control function, for traces
  const char* name;
  const char* start;
  const char* stop;
  bool quiet;  // discards its output and logs its commands
  // Held from the check of `running` to the end of the command, so that two threads start
  // it only once and a stop never overtakes a start. A setting on the RPC thread waits at
  // most for one command of the worker.
  pthread_mutex_t lock;
  bool running;  // started by this child; written under the lock
  bool asked;    // left_running has been called; written under the lock
};

// Starts it if `mode` is not 0 and it is `wanted`; stops it if `mode` is 0. Does nothing
// if it is already in that state.
void switch_companion(companion* process, int mode, bool wanted);

// Whether a process of this name, started by an earlier service child, is still running;
// traced under the control's name. Checked only before this child's first start: after a
// stop the process may be about to exit. Call with the lock held.
[[nodiscard]] bool left_running(companion* process);
