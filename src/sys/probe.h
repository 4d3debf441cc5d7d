#pragma once

#include <cstddef>

// Looks at the system: what commands print, what others hold.

// Runs a command line and converts the first `size` bytes of its output, 32 at
// most, to a number. False when the shell could not be started or nothing was
// read.
[[nodiscard]] bool probe_number(const char* command, size_t size, int* number);

// Whether a process of the user that this one runs as has the name. One of another
// user's that calls itself so does not count, nor one that has ended.
[[nodiscard]] bool process_runs(const char* name);

// Makes sure that descriptors 0 to 2 are open, on /dev/null where they are not,
// so that no socket or file of the daemon ends up as standard output.
void reserve_standard_streams();

// Runs a command line and hands its output on line by line, in pieces of at
// most 63 characters. Nothing when the shell could not be started.
void probe_lines(const char* command, void (*take)(const char* line, void* context), void* context);
