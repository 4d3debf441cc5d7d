// The output of --json. Each function makes one JSON value on one line, in ASCII.
//
// Texts are JSON strings. If a text is not valid UTF-8, "NAME_escaped" is true beside it, each
// byte that is not UTF-8 is written \xNN, and each backslash is doubled. Without "NAME_escaped"
// the text is unchanged.
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

// "procedure", "number", "return_code" and "value": a number, a text or, for a record, an
// object of its fields. With a negative return code there is no "value".
nlohmann::ordered_json json_result(const procedure_row& procedure, const decoded_reply& reply);
nlohmann::ordered_json json_fields(std::span<const payload_field> fields, std::string_view record);

// On one line, in ASCII, so that no character of a text reaches the terminal unescaped.
std::string json_line(const nlohmann::ordered_json& value);

// "error" with "kind", "message" and "exit_status" of a command without a result. Commands that
// repeat add the time.
std::string json_error(const failure_report& failure, const std::string& time = "");

std::string json_sample(const procedure_row& procedure, const decoded_reply& reply,
                        const std::string& time);

std::string json_reply(const procedure_row& procedure, const decoded_reply& reply);

// "procedure" (null if unknown), "number" and "result": all bytes of the result in hexadecimal.
std::string json_raw(uint32_t number, std::string_view result);

std::string json_ping(double seconds);

// An array of "number", "procedure", "summary", "topic".
std::string json_list(const std::vector<const procedure_row*>& procedures);

// An array of "topic", "title", "procedures": the number of procedures.
std::string json_topics();

std::string json_describe(const procedure_row& procedure);
