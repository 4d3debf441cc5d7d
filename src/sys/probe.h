#pragma once

#include <cstddef>

// Looks at the system: what commands print, which processes run.

// Runs a command line and converts the first `size` bytes of its output, at most 32, to a
// number. False when the shell could not be started or nothing was read.
[[nodiscard]] bool probe_number(const char* command, size_t size, int* number);

// Whether a live process of our own user has the name. Another user's process of that
// name does not count.
[[nodiscard]] bool process_runs(const char* name);

// Makes sure that descriptors 0 to 2 are open, on /dev/null if necessary, so that no
// socket or file of the daemon becomes standard output.
void reserve_standard_streams();

// Runs a command line and passes its output on line by line, in pieces of at most 63
// characters. Does nothing when the shell could not be started.
void probe_lines(const char* command, void (*take)(const char* line, void* context), void* context);
