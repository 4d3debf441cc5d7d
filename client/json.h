// What --json prints: each function makes one JSON value on one line, in ASCII.
//
// Texts are JSON strings. A text that is no valid UTF-8 cannot be one; then
// the object has "escaped": true, every byte that is no UTF-8 is written \xNN
// and every backslash is doubled. Without "escaped" the text is as it is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "reply.h"
#include "table.h"

// "procedure", "number", "return_code", and by kind "value" (INT, TEXT),
// "words" (WORDS) or "data" (IMAGE, hexadecimal). A negative return code
// stands alone: what comes with it is no value.
std::string json_reply(const procedure_row& procedure, const decoded_reply& reply);

// "procedure" (null when unknown), "number" and "result": all bytes of the
// result, hexadecimal.
std::string json_raw(uint32_t number, std::string_view result);

std::string json_ping(double seconds);

// Array of "number", "procedure", "summary".
std::string json_list(std::string_view pattern);

std::string json_describe(const procedure_row& procedure);
