// What runs in the box on the user's behalf: COMMAND, or a shell.
#pragma once

#include <sys/types.h>
#include <string>
#include <vector>

// How the payload stands to the terminal from which gwbox was started.
enum payload_terminal {
  kPayloadApart,       // standard input is no terminal: a session of its own
  kPayloadAlongside,   // part of a pipeline: stays in gwbox's process group
  kPayloadForeground,  // a job of its own, which gwbox puts in the foreground
};

struct payload_plan {
  std::vector<std::string> command;  // empty: an interactive shell
  std::string program_dir;           // goes first in PATH
  std::string board;                 // shown in the prompt
  payload_terminal terminal;
  mode_t umask;
};

// Must be called while standard input is still the user's.
payload_terminal payload_choose_terminal();

// Starts it in the calling process's box; returns its pid, or -1 after a report. When it cannot
// be executed it says so and ends with 126 or 127, as env(1) does.
[[nodiscard]] pid_t payload_start(const payload_plan& plan);

// Puts the process group in the foreground of the terminal on standard input.
void payload_to_foreground(pid_t group);

// For a child about to execute something: no signal stays blocked.
void payload_reset_signals();
