// Bytes shown to people. Text from the network is never assumed to be printable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Decodes the UTF-8 sequence at `at`. Returns its length in bytes, or 0 if it is invalid
// (overlong forms and surrogates are).
size_t text_decode(std::string_view bytes, size_t at, uint32_t* code_point);

bool text_is_utf8(std::string_view bytes);

// Makes text safe for a terminal. Printable ASCII and valid UTF-8 stay as they are. Control
// characters (C0, DEL, C1), direction marks and bytes that are not UTF-8 become \xNN, one per
// byte; a backslash is doubled. So each output has exactly one input.
std::string text_escape(std::string_view bytes);

// User input for a message: escaped, in quotes, cut if long.
std::string text_quote(std::string_view bytes);

// For a JSON string. Valid UTF-8 is returned unchanged and *escaped is false. Otherwise bytes
// that are not UTF-8 become \xNN, backslashes are doubled, and *escaped is true. The result is
// always valid UTF-8.
std::string text_for_json(std::string_view bytes, bool* escaped);

std::string text_hex(std::string_view bytes);

// A hex dump: offset, up to 16 bytes, printable ASCII. A run of identical full lines is shown
// as its first line and a "*". The last line is always shown, so that the length can be read
// off.
std::string text_dump_bytes(std::string_view bytes);

// Wraps `text` at `width` columns. All lines but the first are indented by `indent`; the first
// starts in column `column`. A longer word gets its own line. Width 0 leaves the text as it is.
// No newline at the end.
std::string text_wrap(std::string_view text, size_t width, size_t column, size_t indent);

std::string text_lower(std::string_view text);
std::string text_upper(std::string_view text);

[[gnu::format(printf, 1, 2)]] std::string text_format(const char* format, ...);
