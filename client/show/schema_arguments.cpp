#include <nlohmann/json.hpp>

#include "show/schema.h"
#include "values/argument_meanings.h"
#include "wire/lookup.h"

using ordered_json = nlohmann::ordered_json;

static constexpr char kMacPattern[] = "^([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}$";

static ordered_json any_of(const std::vector<ordered_json>& schemas) {
  if (schemas.size() == 1) return schemas[0];
  return {{"anyOf", schemas}};
}

static ordered_json pattern(const std::string& regular) {
  return {{"type", "string"}, {"pattern", regular}};
}

static ordered_json number_schema(const constraint_range& range) {
  ordered_json schema = {{"type", "integer"}, {"minimum", range.low}, {"maximum", range.high}};
  if (range.meaning != nullptr) schema["description"] = range.meaning;
  return schema;
}

static ordered_json any_text_schema(const constraint& limits) {
  return {{"type", "string"}, {"not", {{"pattern", constraint_misfit_pattern(limits)}}}};
}

// JSON Schema counts characters, the limits count bytes. In ASCII they are the same.
static ordered_json text_schema(const constraint& limits, const constraint_range& range) {
  ordered_json schema = any_text_schema(limits);
  schema.update({{"minLength", range.low},
                 {"maxLength", range.high},
                 {"x-min-bytes", range.low},
                 {"x-max-bytes", range.high}});
  return schema;
}

static std::string repeated(const char* characters, const constraint_range& range, int64_t each) {
  return std::string("^(") + characters + "){" + std::to_string(range.low / each) + "," +
         std::to_string(range.high / each) + "}$";
}

static ordered_json range_schema(const constraint& limits, const constraint_range& range) {
  switch (limits.kind) {
    case constraint_kind::kText:
    case constraint_kind::kPassphrase:
      return text_schema(limits, range);
    case constraint_kind::kHex:
      return pattern(repeated("[0-9A-Fa-f]{2}", range, 2));
    case constraint_kind::kDigits:
      return pattern(repeated("[0-9]", range, 1));
    case constraint_kind::kInteger:
    case constraint_kind::kNumber:
      return number_schema(range);
    case constraint_kind::kByType:
    case constraint_kind::kAnyText:
    case constraint_kind::kSwitch:
    case constraint_kind::kWord:
    case constraint_kind::kMac:
    case constraint_kind::kIpv4:
      break;
  }
  return {};  // these have no ranges
}

static ordered_json words_schema(const constraint& limits) {
  return {{"enum", constraint_values(limits)}};
}

static ordered_json ranges_schema(const constraint& limits) {
  std::vector<ordered_json> schemas;
  for (const constraint_range& range : constraint_ranges(limits))
    schemas.push_back(range_schema(limits, range));
  if (limits.kind == constraint_kind::kPassphrase) schemas.push_back(pattern("^[0-9A-Fa-f]{64}$"));
  return any_of(schemas);
}

static ordered_json limits_schema(const constraint& limits) {
  switch (limits.kind) {
    case constraint_kind::kByType:
    case constraint_kind::kAnyText:
      return any_text_schema(limits);
    case constraint_kind::kSwitch:
      return {{"type", "boolean"}};
    case constraint_kind::kWord:
      return words_schema(limits);
    case constraint_kind::kMac:
      return pattern(kMacPattern);
    case constraint_kind::kIpv4:
      return {{"type", "string"}, {"format", "ipv4"}};
    case constraint_kind::kInteger:
    case constraint_kind::kNumber:
    case constraint_kind::kText:
    case constraint_kind::kHex:
    case constraint_kind::kDigits:
    case constraint_kind::kPassphrase:
      break;
  }
  return ranges_schema(limits);
}

nlohmann::ordered_json schema_of_argument(const procedure_row& procedure,
                                          const argument_spec& argument) {
  ordered_json schema = limits_schema(meanings_limits(procedure, argument));
  schema["description"] = meanings_text(procedure, argument);
  return schema;
}

std::string schema_of_arguments(const procedure_row& procedure) {
  ordered_json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                         {"title", "arguments of " + lookup_display_name(procedure)},
                         {"type", "object"},
                         {"properties", ordered_json::object()},
                         {"required", ordered_json::array()},
                         {"additionalProperties", false}};
  for (const argument_spec& argument : table_arguments(procedure)) {
    schema["properties"][argument.name] = schema_of_argument(procedure, argument);
    schema["required"].push_back(argument.name);
  }
  return schema.dump() + "\n";
}
