// Bytes for people: texts that come from the network are bytes, never trusted
// to be printable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Decodes the UTF-8 sequence at `at`; its length in bytes, or 0 when it is no
// valid one (overlong forms and surrogates are not).
size_t text_decode(std::string_view bytes, size_t at, uint32_t* code_point);

bool text_is_utf8(std::string_view bytes);

// Safe on a terminal: printable ASCII and valid UTF-8 as they are; control
// characters (C0, DEL, C1), characters that change the direction of writing
// and bytes that are no UTF-8 as \xNN, one per byte; a backslash as two.
// So every output stands for exactly one input.
std::string text_escape(std::string_view bytes);

// What somebody gave, for a message: escaped, in quotes, cut when it is long.
std::string text_quote(std::string_view bytes);

// For a JSON string: valid UTF-8 comes back unchanged and *escaped is false;
// else every byte that is no UTF-8 is \xNN, every backslash is two, and
// *escaped is true. The result is always valid UTF-8.
std::string text_for_json(std::string_view bytes, bool* escaped);

// Lower-case hexadecimal digits, two per byte.
std::string text_hex(std::string_view bytes);

// Lines of an offset and up to 16 bytes, with their printable ASCII. Of full lines with
// the same bytes the first stands for all, and one "*" for the others; the last line is
// always there, so that the length can be read off.
std::string text_dump_bytes(std::string_view bytes);

// Words of `text` in lines of at most `width` columns, all lines but the first
// indented by `indent`; the first begins in column `column`. A longer word has
// a line of its own. Width 0 leaves the text as it is. No newline at the end.
std::string text_wrap(std::string_view text, size_t width, size_t column, size_t indent);

std::string text_lower(std::string_view text);
std::string text_upper(std::string_view text);

[[gnu::format(printf, 1, 2)]] std::string text_format(const char* format, ...);
