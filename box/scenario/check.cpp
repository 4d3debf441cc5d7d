// Checks scenarios against their schema. It knows as much of JSON Schema as that schema uses.
#include <regex.h>

#include <algorithm>
#include <map>

#include "scenario/parts.h"

const scenario_json& scenario_schema_document() {
  static const scenario_json kSchema = scenario_json::parse(scenario_schema(), nullptr, false);
  return kSchema;
}

const scenario_json& scenario_schema_resolve(const scenario_json& schema) {
  auto reference = schema.find("$ref");
  if (reference == schema.end()) return schema;
  const std::string prefix = "#/$defs/";
  return scenario_schema_document()["$defs"][reference->get<std::string>().substr(prefix.size())];
}

const scenario_json* scenario_schema_at(const std::vector<std::string>& path) {
  const scenario_json* schema = &scenario_schema_document();
  for (const std::string& step : path) {
    const char* key = step[0] == '[' ? "items" : "properties";
    if (!schema->contains(key)) return nullptr;
    const scenario_json& below = (*schema)[key];
    if (step[0] != '[' && !below.contains(step)) return nullptr;
    schema = &scenario_schema_resolve(step[0] == '[' ? below : below[step]);
  }
  return schema;
}

static std::string text_of(const scenario_json& schema, const char* key) {
  auto found = schema.find(key);
  return found != schema.end() && found->is_string() ? found->get<std::string>() : "";
}

static std::string range(const scenario_json& schema, const char* low, const char* high) {
  bool has_low = schema.contains(low), has_high = schema.contains(high);
  if (has_low && has_high && schema[low] == schema[high]) return schema[low].dump();
  if (has_low && has_high) return schema[low].dump() + " to " + schema[high].dump();
  if (has_high) return "at most " + schema[high].dump();
  return has_low ? "at least " + schema[low].dump() : "";
}

static std::string choices(const scenario_json& list) {
  std::string text;
  for (size_t i = 0; i < list.size(); ++i)
    text += (i == 0 ? "" : i + 1 == list.size() ? " or " : ", ") + list[i].dump();
  return text;
}

static std::string plural(const std::string& type) {
  if (type == "integer") return "whole numbers";
  if (type == "string") return "texts";
  return type + "s";
}

// "1 to 4 numbers", "a whole number from 1 to 16", "true or false".
static std::string expected(const scenario_json& schema) {
  if (std::string title = text_of(schema, "title"); !title.empty()) return title;
  if (schema.contains("enum")) return choices(schema["enum"]);
  std::string type = text_of(schema, "type"), limits = range(schema, "minimum", "maximum");
  if (type == "array") {
    std::string count = range(schema, "minItems", "maxItems");
    return (count.empty() ? "" : count + " ") +
           plural(text_of(scenario_schema_resolve(schema["items"]), "type"));
  }
  if (type == "boolean") return "true or false";
  if (type == "object") return "an object";
  if (type == "string") {
    std::string length = schema.contains("maxLength") ? schema["maxLength"].dump() : "";
    return length.empty() ? "a text" : "a text of at most " + length + " bytes";
  }
  return (type == "integer" ? "a whole number" : "a number") +
         (limits.empty() ? "" : " from " + limits);
}

static bool matches(const std::string& text, const std::string& pattern) {
  // Never freed: it is used until the program ends.
  static auto& compiled = *new std::map<std::string, regex_t>;
  auto [at, is_new] = compiled.try_emplace(pattern);
  if (is_new && regcomp(&at->second, pattern.c_str(), REG_EXTENDED | REG_NOSUB) != 0) return false;
  return regexec(&at->second, text.c_str(), 0, nullptr, 0) == 0;
}

static bool has_type(const scenario_json& value, const std::string& type) {
  if (type == "string") return value.is_string();
  if (type == "integer") return value.is_number_integer();
  if (type == "number") return value.is_number();
  if (type == "boolean") return value.is_boolean();
  if (type == "array") return value.is_array();
  return type.empty() || value.is_object();
}

static bool fits_number(const scenario_json& value, const scenario_json& schema) {
  double number = value.get<double>();
  return number >= schema.value("minimum", number) && number <= schema.value("maximum", number);
}

static bool fits_text(const scenario_json& value, const scenario_json& schema) {
  const std::string& text = value.get_ref<const std::string&>();
  mac_address mac;
  if (text.find('\0') != std::string::npos) return false;
  if (text.size() > schema.value("maxLength", text.size())) return false;
  if (text_of(schema, "format") == "mac" && !mac_parse(text, mac)) return false;
  std::string pattern = text_of(schema, "pattern");
  return pattern.empty() || matches(text, pattern);
}

static bool fits(const scenario_json& value, const scenario_json& schema) {
  if (!has_type(value, text_of(schema, "type"))) return false;
  if (auto list = schema.find("enum"); list != schema.end()) {
    return std::find(list->begin(), list->end(), value) != list->end();
  }
  if (value.is_number()) return fits_number(value, schema);
  if (value.is_string()) return fits_text(value, schema);
  if (!value.is_array()) return true;
  return value.size() >= schema.value("minItems", size_t{0}) &&
         value.size() <= schema.value("maxItems", value.size());
}

struct checking {
  std::vector<std::string> path;
  std::vector<scenario_finding> findings;
};

static void find(checking& c, const std::string& message) {
  c.findings.push_back({c.path, message});
}

static void check(const scenario_json& value, const scenario_json& given, checking& c);

static void check_below(const std::string& step, const scenario_json& value,
                        const scenario_json& schema, checking& c) {
  c.path.push_back(step);
  check(value, schema, c);
  c.path.pop_back();
}

static bool has_all(const scenario_json& value, const scenario_json& names) {
  return std::all_of(names.begin(), names.end(), [&](const scenario_json& name) {
    return value.contains(name.get<std::string>());
  });
}

// Exactly one of the alternatives must be there; each is a list of members.
static void check_alternatives(const scenario_json& value, const scenario_json& alternatives,
                               checking& c) {
  std::string names;
  int there = 0;
  for (const scenario_json& alternative : alternatives) {
    there += has_all(value, alternative["required"]);
    names += (names.empty() ? "" : " or ") + alternative["required"][0].dump();
  }
  if (there != 1) find(c, "expected either " + names);
}

static void check_members(const scenario_json& value, const scenario_json& schema, checking& c) {
  for (const scenario_json& name : schema.value("required", scenario_json::array())) {
    if (!value.contains(name.get<std::string>())) find(c, name.dump() + " is missing");
  }
  if (schema.contains("oneOf")) check_alternatives(value, schema["oneOf"], c);
  auto properties = schema.find("properties");
  if (properties == schema.end()) return;
  for (const auto& [name, member] : value.items()) {
    if (properties->contains(name)) {
      check_below(name, member, (*properties)[name], c);
      continue;
    }
    std::string known;
    for (const auto& property : properties->items())
      known += (known.empty() ? "" : ", ") + property.key();
    c.path.push_back(name);
    find(c, "unknown, there are " + known);
    c.path.pop_back();
  }
}

// A list of plain values is one thing to its reader, so a finding is about the whole list.
static void check_items(const scenario_json& value, const scenario_json& schema, checking& c) {
  const scenario_json& item = scenario_schema_resolve(schema["items"]);
  if (text_of(item, "type") == "object") {
    for (size_t i = 0; i < value.size(); ++i)
      check_below("[" + std::to_string(i) + "]", value[i], item, c);
    return;
  }
  for (const scenario_json& element : value) {
    if (fits(element, item)) continue;
    bool same_type = has_type(element, text_of(item, "type"));
    return find(c, "expected " + expected(schema) + (same_type ? ", each " + expected(item) : ""));
  }
}

static void check(const scenario_json& value, const scenario_json& given, checking& c) {
  const scenario_json& schema = scenario_schema_resolve(given);
  if (!fits(value, schema)) return find(c, "expected " + expected(schema));
  if (value.is_object()) check_members(value, schema, c);
  if (value.is_array() && schema.contains("items")) check_items(value, schema, c);
}

std::vector<scenario_finding> scenario_check(const scenario_json& document) {
  checking c;
  check(document, scenario_schema_document(), c);
  return c.findings;
}
