#pragma once

#include <cstddef>

// Runs command lines and quotes text for them.

// Runs a command line, whose exit status does not matter, and waits for it. False only
// when no shell could be run.
bool run_command(const char* command);

// Runs a command line and waits for it. True when it exited with status 0.
[[nodiscard]] bool command_succeeds(const char* command);

// Like run_command, through ex_cmd; the output is discarded.
void run_captured(const char* caller, const char* command);

// Whether a path exists. A symbolic link must lead to something.
[[nodiscard]] bool path_exists(const char* path);

// Whether the name exists, even as a symbolic link that leads nowhere.
[[nodiscard]] bool name_exists(const char* path);

// Writes a text from outside into `out` for use in a command line: unchanged when it
// consists of letters, digits, ".", "_", "-" and ":"; otherwise single-quoted, so that no
// text can run a command. A text that does not fit in `size` bytes is cut, but its quotes
// stay complete.
void quote_for_shell(const char* text, char* out, size_t size);

// The same, returned by value, with at most Size - 1 characters.
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
