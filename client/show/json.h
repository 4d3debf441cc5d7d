// What --json prints: each function makes one JSON value on one line, in ASCII.
//
// Texts are JSON strings. A text that is no valid UTF-8 cannot be one; then
// "NAME_escaped" is true beside it, every byte that is no UTF-8 is written \xNN
// and every backslash is doubled. Without it the text is as it is.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "show/failure.h"
#include "values/payload.h"
#include "wire/reply.h"
#include "wire/table.h"

// "procedure", "number", "return_code" and "value": a number, a text or, for a
// record, an object of its fields. A negative return code stands alone: what
// comes with it is no value.
nlohmann::ordered_json json_result(const procedure_row& procedure, const decoded_reply& reply);
// An object of a record's, or a row's, fields.
nlohmann::ordered_json json_fields(std::span<const payload_field> fields, std::string_view record);

// On one line, in ASCII, so that no character of a text reaches the terminal as it is.
std::string json_line(const nlohmann::ordered_json& value);

// "error": "kind", "message" and "exit_status" of a command without a result; the time in
// what is repeated.
std::string json_error(const failure_report& failure, const std::string& time = "");

// With the time at which the answer came.
std::string json_sample(const procedure_row& procedure, const decoded_reply& reply,
                        const std::string& time);

std::string json_reply(const procedure_row& procedure, const decoded_reply& reply);

// "procedure" (null when unknown), "number" and "result": all bytes of the
// result, hexadecimal.
std::string json_raw(uint32_t number, std::string_view result);

std::string json_ping(double seconds);

// Array of "number", "procedure", "summary", "topic".
std::string json_list(const std::vector<const procedure_row*>& procedures);

// Array of "topic", "title", "procedures": how many it has.
std::string json_topics();

std::string json_describe(const procedure_row& procedure);
