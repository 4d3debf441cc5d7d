// A terminal that a command redraws while it takes single keys from it.
#pragma once

#include "show/output.h"

enum class live_key {
  kNone,
  kQuit,    // q, the end of the terminal, or a signal that ends the program
  kRedraw,  // the terminal has another size, or the program was stopped and goes on
  kUp,
  kDown,
  kPageUp,
  kPageDown,
  kFirst,
  kLast,
};

// Takes keys one by one, without their echo, and catches the signals that end, stop or
// resize; with `own_screen` on a screen beside the one that was there. Where standard
// input is no terminal, or another program has it, there are signals alone. One at a
// time; live_end() puts everything back.
void live_begin(const output_streams& streams, bool own_screen);
void live_end();

// The next key; kNone when there is none. Other keys are passed over. Does not wait, but
// for a program that was told to stop.
live_key live_read();

// The same, and waits for it until `moment`, of moment_now().
live_key live_wait(double moment);

// What is readable when there may be a key; -1 when there never is.
int live_fd();
