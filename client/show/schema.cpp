#include "show/schema.h"

#include <nlohmann/json.hpp>

#include "show/describe.h"
#include "values/payload.h"
#include "values/stations.h"
#include "wire/lookup.h"

using ordered_json = nlohmann::ordered_json;

static ordered_json type_of(const char* type) {
  return {{"type", type}};
}

static ordered_json integer(int64_t minimum, uint64_t maximum) {
  return {{"type", "integer"}, {"minimum", minimum}, {"maximum", maximum}};
}

static ordered_json or_null(ordered_json schema) {
  schema["type"] = {schema["type"], "null"};
  return schema;
}

static ordered_json rate_schema() {
  ordered_json object = {{"type", "object"}, {"additionalProperties", false}};
  object["properties"] = {{"mbit_s", or_null(type_of("number"))},
                          {"phy", {{"enum", {"CCK", "OFDM", "HT", "VHT"}}}},
                          {"mhz", {{"enum", {20, 40, 80, 160}}}},
                          {"streams", integer(0, 8)},
                          {"mcs", integer(0, 15)},
                          {"short_guard", type_of("boolean")},
                          {"word", integer(0, UINT16_MAX)}};
  object["required"] = {"mbit_s", "phy", "mhz", "streams", "mcs", "short_guard", "word"};
  return object;
}

static ordered_json field_schema(field_type type) {
  switch (type) {
    case field_type::kU8:
    case field_type::kBssPosition:
      return integer(0, UINT8_MAX);
    case field_type::kI8:
      return integer(INT8_MIN, INT8_MAX);
    case field_type::kU16:
      return integer(0, UINT16_MAX);
    case field_type::kU32:
    case field_type::kCounter32:
    case field_type::kTime:
      return integer(0, UINT32_MAX);
    case field_type::kI32:
    case field_type::kRate1024:
      return integer(INT32_MIN, INT32_MAX);
    case field_type::kU64:
    case field_type::kCounter64:
      return integer(0, UINT64_MAX);
    case field_type::kI64:
    case field_type::kCounterI64:
      return integer(INT64_MIN, INT64_MAX);
    case field_type::kFlag:
      return type_of("boolean");
    case field_type::kText:
      return type_of("string");
    case field_type::kMac:
      return {{"type", "string"}, {"pattern", "^([0-9a-f]{2}:){5}[0-9a-f]{2}$"}};
    case field_type::kRate:
      return rate_schema();
    case field_type::kBytes:
      return {{"type", "string"}, {"pattern", "^([0-9a-f]{2})*$"}};
  }
  return {};
}

// The values that mean "not known" are null in JSON.
static std::string meaning_of(const char* meaning, not_known unknown) {
  if (unknown == not_known::kNever) return meaning;
  return std::string(meaning) + (*meaning == '\0' ? "" : "; ") + "null: not known";
}

static std::string description(const payload_field& field) {
  const bool time = field.type == field_type::kTime;
  return describe_meaning(meaning_of(field.meaning, field.unknown),
                          time ? "s since the epoch" : field.unit);
}

static ordered_json closed_object() {
  return {{"type", "object"},
          {"properties", ordered_json::object()},
          {"required", ordered_json::array()},
          {"additionalProperties", false}};
}

static ordered_json head(const std::string& title, const char* description) {
  ordered_json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                         {"title", title},
                         {"description", description}};
  schema.update(closed_object());
  return schema;
}

static void add_text(ordered_json& object, const std::string& name) {
  object["properties"][name] = type_of("string");
  object["properties"][name + "_escaped"] = {
      {"const", true}, {"description", "there when the text is no UTF-8: \\xNN stands for a byte"}};
}

static ordered_json fields_schema(std::span<const payload_field> fields) {
  ordered_json object = closed_object();
  for (const payload_field& field : fields) {
    if (field.type == field_type::kText) add_text(object, field.name);
    ordered_json& property = object["properties"][field.name];
    const bool always = field.unknown == not_known::kNever && field.type != field_type::kTime;
    property = always ? field_schema(field.type) : or_null(field_schema(field.type));
    if (!description(field).empty()) property["description"] = description(field);
    object["required"].push_back(field.name);
  }
  return object;
}

static ordered_json record_schema(const payload_layout& layout) {
  ordered_json object = fields_schema(layout.fields);
  if (layout.rows == nullptr) return object;
  object["properties"][layout.rows->name] = {{"type", "array"},
                                             {"maxItems", layout.rows->capacity},
                                             {"items", fields_schema(layout.rows->fields)}};
  object["required"].push_back(layout.rows->name);
  return object;
}

static ordered_json value_schema(const procedure_row& procedure) {
  const value_meaning& value = payload_value(procedure);
  ordered_json schema = integer(INT32_MIN, INT32_MAX);
  if (value.unknown != not_known::kNever) schema = or_null(schema);
  const std::string meaning = meaning_of(value.meaning, value.unknown);
  if (!meaning.empty()) schema["description"] = meaning;
  if (*value.unit != '\0') schema["x-unit"] = value.unit;
  return schema;
}

// Adds "value", required in every successful answer.
static void add_value(ordered_json& object, const procedure_row& procedure) {
  switch (procedure.payload) {
    case payload_kind::INT:
      object["properties"]["value"] = value_schema(procedure);
      break;
    case payload_kind::TEXT:
      add_text(object, "value");
      break;
    case payload_kind::WORDS:
    case payload_kind::IMAGE:
      object["properties"]["value"] = record_schema(*payload_find(procedure));
      break;
    case payload_kind::CODE:
    case payload_kind::NONE:
      return;
  }
  object["if"] = {{"properties", {{"return_code", {{"minimum", 0}}}}}};
  object["then"] = {{"required", {"value"}}};
}

// Adds "inert", required for a procedure that does nothing, and for no other.
static void add_inert(ordered_json& object, const procedure_row& procedure) {
  if (!procedure.inert) return;
  object["properties"]["inert"] = {{"const", true}, {"description", describe_note(procedure)}};
  object["required"].push_back("inert");
}

std::string schema_of(const procedure_row& procedure) {
  ordered_json schema = head(lookup_display_name(procedure), procedure.summary);
  schema["properties"]["procedure"] = {{"const", lookup_display_name(procedure)}};
  schema["properties"]["number"] = {{"const", procedure.number}};
  schema["properties"]["return_code"] = integer(INT32_MIN, INT32_MAX);
  schema["properties"]["return_code"]["description"] = payload_codes(procedure);
  schema["properties"]["time"] = {{"type", "string"}, {"description", "of watch only"}};
  schema["required"] = {"procedure", "number", "return_code"};
  add_inert(schema, procedure);
  add_value(schema, procedure);
  return schema.dump() + "\n";
}

std::string schema_of_error() {
  ordered_json error = closed_object();
  error["properties"]["kind"] = {{"type", "string"}, {"pattern", "^[a-z_]+$"}};
  error["properties"]["message"] = type_of("string");
  error["properties"]["exit_status"] = integer(1, 4);
  error["required"] = {"kind", "message", "exit_status"};
  ordered_json schema = head("error", "What --json prints when a command has no result");
  schema["properties"]["error"] = error;
  schema["properties"]["time"] = {{"type", "string"}, {"description", "of watch only"}};
  schema["required"] = {"error"};
  return schema.dump() + "\n";
}

std::string schema_of_top() {
  ordered_json station = fields_schema(stations_rows().fields);
  station["properties"]["bss"] = integer(1, kBssMax);
  for (const char* name : {"bytes_sent_per_second", "bytes_received_per_second"}) {
    station["properties"][name] = or_null(type_of("number"));
    station["properties"][name]["description"] = "null in the first sample";
  }
  for (const char* name : {"bss", "bytes_sent_per_second", "bytes_received_per_second"})
    station["required"].push_back(name);
  ordered_json schema = head("top", "What top prints with --json");
  schema["properties"]["time"] = type_of("string");
  schema["properties"]["stations"] = {{"type", "array"}, {"items", station}};
  schema["required"] = {"time", "stations"};
  return schema.dump() + "\n";
}
