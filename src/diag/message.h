#pragma once

#include <cstdarg>
#include <cstdio>

// Messages on their way to a console or a log. A message is a format of ours and
// values; texts among the values come from the wire, from profiles and from other
// processes. What a terminal or a reader of lines would act on in such a text is
// written in hexadecimal, as \x1b and \x0a, so that it neither drives the terminal
// nor begins a line of its own. What stands in the format is written as it is.

// Writes a message in pieces of at most kMessagePiece bytes. The conversions are
// those of printf with d, i, u, x, X, p and s, with flags, width, precision (also
// "*", for s) and the lengths h, l, ll and z; anything else, %n among it, is
// written as it stands and takes no value. A text has neither width nor flags; one
// that is null is "(null)".
constexpr size_t kMessagePiece = 1024;
void write_message(FILE* stream, const char* format, va_list values);

// The same with the values themselves, for what is printed without a trace's prefix.
void print_message(FILE* stream, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Bytes at `text`, which has `left`, that may be shown as they are: 1 for a
// printable character of ASCII and a tab, 2 to 4 for a whole character of UTF-8, 0
// for a control character and for a byte that is no UTF-8. `left` is not 0.
[[nodiscard]] size_t showable_bytes(const char* text, size_t left);
