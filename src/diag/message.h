#pragma once

#include <cstdarg>
#include <cstdio>

// Formats messages for a console or a log. A message is a format of ours with values;
// texts among the values come from the wire, from profiles and from other processes.
// Characters in them that a terminal or a line reader would act on are written in
// hexadecimal, as \x1b and \x0a, so that no text drives the terminal or starts a line.
// The format itself is written unchanged.

// Writes a message in pieces of at most kMessagePiece bytes. Conversions are printf's d,
// i, u, x, X, p and s, with flags, width, precision (also "*", for s) and the lengths h,
// l, ll and z. Anything else, including %n, is printed literally and takes no value. A
// text takes no width or flags; a null text is "(null)".
constexpr size_t kMessagePiece = 1024;
void write_message(FILE* stream, const char* format, va_list values);

// The same with variable arguments, for output without a trace prefix.
void print_message(FILE* stream, const char* format, ...) __attribute__((format(printf, 2, 3)));

// How many bytes at `text`, of the `left` that remain, can be shown unchanged: 1 for
// printable ASCII and tab, 2 to 4 for a whole UTF-8 character, 0 for a control character
// or a byte that is not UTF-8. `left` is not 0.
[[nodiscard]] size_t showable_bytes(const char* text, size_t left);
