#pragma once

// Limits that the kernel sets this process.

// Lets this process, and what it starts, have as many descriptors open as its
// hard limit allows, 16384 at most. The kernel has some 28,000 ports for sockets
// that are bound to none: they must not run out first.
void set_descriptor_limit();

// Lets a write that the kernel refuses fail and nothing more: to a pipe that has no
// reader any more, or beyond the largest size of a file. Without it the signal ends
// the process. What is started has the signals' default actions.
void survive_failed_writes();
