#pragma once

#include <nlohmann/json.hpp>
#include <string>

// Checks a value against a JSON Schema with the few keywords that the client's schemas
// use. "" or the first thing that is wrong; an unknown keyword is wrong, too.
std::string schema_objection(const nlohmann::json& schema, const nlohmann::json& value);
