#pragma once

#include <pthread.h>

// A process beside the driver that is started once and killed by its name.
struct companion {
  const char* control;  // the function that switches it, for traces
  const char* name;
  const char* start;
  const char* stop;
  bool quiet;  // its output is thrown away, and its commands are logged
  // Held from the look at `running` to the end of the command: two threads start it
  // once, and no stop overtakes a start. So a setting on the RPC thread waits for a
  // command of the worker at most.
  pthread_mutex_t lock;
  bool running;  // started by this child; written under the lock
  bool asked;    // whether one was left running has been looked at; written under the lock
};

// Starts it for a mode other than 0 where it is wanted, and stops it for mode 0. Nothing
// when it is in that state already.
void switch_companion(companion* process, int mode, bool wanted);

// Whether a process of its name goes on from an earlier service child, which is traced
// as the control's. Only the first start of this child's own asks: after a stop the
// process may only be about to end. With the lock held.
[[nodiscard]] bool left_running(companion* process);
