#include "support/schema_check.h"

#include <algorithm>
#include <cstring>

using nlohmann::json;

static bool has_type(const json& value, const json& type) {
  if (type.is_array())
    return std::any_of(type.begin(), type.end(),
                       [&](const json& one) { return has_type(value, one); });
  if (type == "null") return value.is_null();
  if (type == "integer") return value.is_number_integer();
  if (type == "number") return value.is_number();
  if (type == "string") return value.is_string();
  if (type == "boolean") return value.is_boolean();
  if (type == "array") return value.is_array();
  return type == "object" && value.is_object();
}

static bool all_hex(const std::string& text) {
  return text.find_first_not_of("0123456789abcdef") == text.npos;
}

// The only two patterns that the schemas use.
static bool has_pattern(const std::string& text, const std::string& pattern) {
  if (pattern == "^([0-9a-f]{2})*$") return text.size() % 2 == 0 && all_hex(text);
  if (pattern != "^([0-9a-f]{2}:){5}[0-9a-f]{2}$" || text.size() != 17) return false;
  std::string digits;
  for (size_t i = 0; i < text.size(); ++i) {
    if (i % 3 != 2) digits += text[i];
    if (i % 3 == 2 && text[i] != ':') return false;
  }
  return all_hex(digits);
}

static std::string object_objection(const json& schema, const json& value) {
  for (const json& name : schema.value("required", json::array())) {
    if (!value.contains(name.get<std::string>())) return "without " + name.get<std::string>();
  }
  const json& properties = schema["properties"];
  for (const auto& [name, member] : value.items()) {
    if (!properties.contains(name)) return "unknown " + name;
    const std::string objection = schema_objection(properties[name], member);
    if (!objection.empty()) return name + ": " + objection;
  }
  return "";
}

static std::string array_objection(const json& schema, const json& value) {
  if (value.size() > schema["maxItems"].get<size_t>()) return "too many items";
  for (const json& item : value) {
    const std::string objection = schema_objection(schema["items"], item);
    if (!objection.empty()) return objection;
  }
  return "";
}

static bool is_known(const std::string& word) {
  static constexpr const char* kWords[] = {"$schema",
                                           "title",
                                           "description",
                                           "x-unit",
                                           "type",
                                           "minimum",
                                           "maximum",
                                           "enum",
                                           "const",
                                           "pattern",
                                           "required",
                                           "properties",
                                           "additionalProperties",
                                           "items",
                                           "maxItems",
                                           "if",
                                           "then"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [&](const char* known) { return word == known; });
}

static std::string value_objection(const json& schema, const json& value) {
  if (schema.contains("type") && !has_type(value, schema["type"])) return "another type";
  // Limits apply to numbers only; a value may have other types as well.
  const bool number = value.is_number();
  if (number && schema.contains("minimum") && value < schema["minimum"]) return "too small";
  if (number && schema.contains("maximum") && value > schema["maximum"]) return "too large";
  if (schema.contains("const") && value != schema["const"]) return "another value";
  if (schema.contains("pattern") && !has_pattern(value, schema["pattern"])) return "another form";
  if (!schema.contains("enum")) return "";
  const json& list = schema["enum"];
  return std::find(list.begin(), list.end(), value) == list.end() ? "none of the values" : "";
}

std::string schema_objection(const json& schema, const json& value) {
  for (const auto& [word, unused] : schema.items()) {
    if (!is_known(word)) return "unknown word " + word;
  }
  const std::string objection = value_objection(schema, value);
  if (!objection.empty()) return objection;
  if (value.is_array()) return array_objection(schema, value);
  if (!value.is_object()) return "";
  // The only condition in the schemas: an answer has a value unless it is a failure.
  if (schema.contains("then") && value["return_code"] >= 0 && !value.contains("value")) {
    return "without a value";
  }
  return object_objection(schema, value);
}
