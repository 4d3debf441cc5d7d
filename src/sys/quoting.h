#pragma once

#include <cstddef>

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
