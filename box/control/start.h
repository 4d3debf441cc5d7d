// Starts the processes of a box from a thread that has the filter, so that they inherit it, while
// the first thread answers the calls that they make.
#pragma once

#include "companions/start.h"
#include "control/first_process.h"
#include "host/portmap.h"

struct box_start {
  const box_plan* plan;
  int steps;    // readable when a step is done; -1: no more
  int tell;     // the thread's end of it
  int proceed;  // the thread reads a byte from here before it starts the payload
  int go_on;    // and this is the other end
  int filter;   // the thread writes the filter's listener to it
  portmap portmapper;
  companions_starting starting;
  pid_t payload;
};

enum class start_step : char { kFailed, kServices, kPayload };

// Starts the thread, which installs the filter and then starts portmapper and companions. LISTENER:
// of the filter. PLAN must last until the payload has started. False after a report.
[[nodiscard]] bool start_begin(box_start& start, const box_plan& plan, int& listener);

// Whether a step is done, and which.
bool start_is_waiting(const box_start& start);
start_step start_step_done(box_start& start);

// After kServices: lets the thread start the payload.
void start_go_on(box_start& start);
