#pragma once

#include <nlohmann/json.hpp>
#include <string>

// Holds a value against a JSON Schema of the few words that the client's schemas
// have. "" or the first thing that is wrong; a word that is not known is wrong too.
std::string schema_objection(const nlohmann::json& schema, const nlohmann::json& value);
