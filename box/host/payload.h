// What runs in the box on the user's behalf: COMMAND, or a shell.
#pragma once

#include <sys/types.h>
#include <string>
#include <vector>

// How the payload uses the terminal that gwbox was started from.
enum payload_terminal {
  kPayloadApart,       // not at all, since gwbox has none or is in the background: its own session
  kPayloadAlongside,   // as part of a pipeline: stays in gwbox's process group
  kPayloadForeground,  // as a job of its own, which gwbox puts in the foreground
};

struct payload_plan {
  std::vector<std::string> command;  // empty: an interactive shell
  std::string program_dir;           // goes first in PATH
  std::string board;                 // becomes GWBOX_BOARD
  payload_terminal terminal;
  mode_t umask;
};

// Must be called while standard input is still the user's.
payload_terminal payload_choose_terminal();

// Starts it in the calling process's box; returns its pid, or -1 after a report. If it cannot be
// executed, the child reports that and ends with 126 or 127, as env(1) does.
[[nodiscard]] pid_t payload_start(const payload_plan& plan);

// Puts the process group in the foreground of the terminal on standard input.
void payload_to_foreground(pid_t group);

// For a child about to execute something: unblocks all signals.
void payload_reset_signals();
