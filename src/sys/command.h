#pragma once

#include <cstddef>

// The ways to run a shell command line. Each waits for the command; they differ in where
// its standard output goes and in what is reported. All are re-entrant.

// Output: the daemon's own standard output. Returns the exit status of the command, 128 +
// N after signal N, or -1 when no shell could be run.
int run_command(const char* command);

// Output: discarded, so that a daemon which the command starts may print without harm. The
// command is traced. Returns 0 when it could be started, otherwise -1 with a message.
// `caller` names the calling function in messages.
int cfg_executecmd(const char* caller, const char* command);

// Output: `*output`, a NUL-terminated text that the caller frees, even after a failure, or
// null; with a null `output` it is read and discarded. The buffer grows by 256 bytes per
// line read, so a command that prints nothing leaves an empty 256-byte buffer. Returns 0
// whatever the exit status of the command, or -1 with a message when the shell cannot be
// run or memory runs out. `caller` names the calling function in messages.
int ex_cmd(const char* caller, const char* command, char** output);

// Output: passed on line by line, in pieces of at most 63 characters. Reports nothing, not
// even that the shell could not be started.
void probe_lines(const char* command, void (*take)(const char* line, void* context), void* context);

// The number that the command prints; `missing` when it prints nothing or cannot be run.
[[nodiscard]] int probe_number(const char* command, int missing);
