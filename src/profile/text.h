#pragma once

#include <cstddef>
#include <string_view>

// A profile's text: its lines, and the new content of an update.
//
// Nothing here uses string_view::substr: it can throw, and the code for that would be a
// third of the daemon.

// The first `length` characters, or all when there are fewer.
[[nodiscard]] constexpr std::string_view front_part(std::string_view text, size_t length) {
  return {text.data(), text.size() < length ? text.size() : length};
}

// What follows the first `length` characters, which must exist.
[[nodiscard]] constexpr std::string_view back_part(std::string_view text, size_t length) {
  return {text.data() + length, text.size() - length};
}

// Longest line, including its newline.
constexpr size_t kProfileLineMax = 1727;

constexpr size_t kProfileKeyMax = 31;

// Takes the next line, with its newline, off the front of `rest`; empty at the end. A
// longer line comes in pieces of kProfileLineMax.
[[nodiscard]] inline std::string_view next_line(std::string_view* rest) {
  const std::string_view window = front_part(*rest, kProfileLineMax);
  const size_t end = window.find('\n');
  const std::string_view line = end == window.npos ? window : front_part(window, end + 1);
  rest->remove_prefix(line.size());
  return line;
}

// Whether `key`, which contains no "=", is everything before the line's first "=".
[[nodiscard]] constexpr bool sets_key(std::string_view line, std::string_view key) {
  return line.size() > key.size() && line[key.size()] == '=' && line.starts_with(key);
}

// The parts of a line "Key=Value", the value without the line's last character. False for
// a line without "=".
struct setting {
  std::string_view key;
  std::string_view value;
};
[[nodiscard]] bool parse_setting(std::string_view line, setting* out);

// The field `index` of a ";"-separated list. False when the list is shorter. `last` is
// set when no ";" follows the field.
[[nodiscard]] bool find_field(std::string_view list, int index, std::string_view* field,
                              bool* last);

// Writes the list with field `index` replaced, and a NUL, into `out` of `size` bytes.
// Returns its length, or -1 with nothing written when it does not fit or the index is
// negative.
[[nodiscard]] int replace_field(std::string_view list, std::string_view field, int index, char* out,
                                size_t size);

// A growing text. The record owns `data`; text_release frees it. After the first failed
// append sets `failed`, later ones do nothing.
struct text_buffer {
  char* data;
  size_t length;
  size_t capacity;
  bool failed;
};
void text_reserve(text_buffer* text, size_t capacity);
void text_append(text_buffer* text, std::string_view part);
void text_release(text_buffer* text);
