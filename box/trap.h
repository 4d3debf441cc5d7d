// The driver's door: takes the trapped calls of all processes in the box, reads what they carry
// from the caller's memory, lets the driver model do them, writes the answer back.
#pragma once

#include <stdint.h>

#include <vector>

#include "driver.h"
#include "faults.h"
#include "journal.h"

// A call that a delay rule holds back; the caller sleeps in it meanwhile.
struct trap_delayed {
  uint64_t id;
  int64_t due_us;  // monotonic
  int32_t tid;
  uint32_t arch;
  uint64_t arguments[3];
  fault_rule rule;
};

// The last caller, as the journal names it.
struct trap_caller {
  int32_t tid;
  pid_t pid;    // of the thread's process
  int comm_fd;  // open /proc/<tid>/comm
};

struct trap_state {
  int listener;  // of the filter
  int socket;    // any socket of the box's network, to ask about interfaces
  driver_state driver;
  trap_caller caller;
  journal log;
  std::vector<fault_rule> faults;
  std::vector<trap_delayed> delayed;
};

// Takes one trapped call. To be called when the listener is readable.
void trap_take(trap_state& trap);

// Does the delayed calls that are due; returns milliseconds until the next one, -1: none waits.
int trap_run_delayed(trap_state& trap);
