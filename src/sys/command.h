#pragma once

#include <cstddef>

// Command lines that the daemon puts together and runs.

// Runs a command line whose status does not matter, and waits for it. Returns
// false only when no shell could be run.
bool run_command(const char* command);

// Runs a command line and waits for it. Returns whether it ended with status 0.
[[nodiscard]] bool command_succeeds(const char* command);

// The same as run_command through ex_cmd, its output thrown away.
void run_captured(const char* caller, const char* command);

// Whether a path exists, and leads somewhere when it is a symbolic link.
[[nodiscard]] bool path_exists(const char* path);

// Whether there is something by that name, a link that leads nowhere too.
[[nodiscard]] bool name_exists(const char* path);

// Writes a text from outside into `out` as it may stand in a command line:
// unchanged when it consists of letters, digits, ".", "_", "-" and ":"; else
// single-quoted, so that no text runs a command of its own. A text that does
// not fit `size` bytes is cut inside the text, never inside the quotes.
void quote_for_shell(const char* text, char* out, size_t size);

// The same as a value, of at most Size - 1 characters.
template <size_t Size>
struct shell_word {
  char text[Size];
};
template <size_t Size>
[[nodiscard]] shell_word<Size> shell_word_of(const char* text) {
  shell_word<Size> word;
  quote_for_shell(text, word.text, Size);
  return word;
}
