// A terminal that a command redraws while it reads single keys.
#pragma once

#include "show/output.h"

enum class live_key {
  kNone,
  kQuit,    // q, end of input, or a signal that ends the program
  kRedraw,  // the terminal was resized, or the program was stopped and continued
  kUp,
  kDown,
  kPageUp,
  kPageDown,
  kFirst,
  kLast,
};

// Starts reading single keys without echo, and catches the signals that end, stop or resize.
// `own_screen` uses the alternate screen. If standard input is no terminal, or another program
// has it, only signals are handled. One at a time; live_end() restores everything.
void live_begin(const output_streams& streams, bool own_screen);
void live_end();

// The next key, or kNone. Other keys are skipped. Does not block, except while the program is
// stopped.
live_key live_read();

// The same, but waits until `moment`, as of moment_now().
live_key live_wait(double moment);

// The descriptor that is readable when a key may have come; -1 if there are no keys.
int live_fd();
