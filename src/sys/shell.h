#pragma once

// Shell command lines and text files. All functions are re-entrant.

// Runs a complete shell command line and captures its standard output. `caller` names the
// calling function in messages. `*output` receives a NUL-terminated text that the caller
// frees, even after a failure, or null. The buffer grows by 256 bytes per line read, so a
// command that prints nothing leaves an empty 256-byte buffer. The exit status is
// ignored. Returns 0, or -1 when the shell cannot be run or memory runs out.
[[nodiscard]] int ex_cmd(const char* caller, const char* command, char** output);

// Runs a shell command line and waits for it. Its output goes to /dev/null, so a daemon
// that it starts may print without harm. Returns 0 when the command could be started, -1
// otherwise.
int cfg_executecmd(const char* caller, const char* command);

// Copies a file byte for byte; the target is created or truncated. Returns 1 when the
// whole file was copied, otherwise 0 with a message on standard error.
[[nodiscard]] int _file_copy(const char* source, const char* target);
