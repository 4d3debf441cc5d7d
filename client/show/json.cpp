#include "show/json.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "show/describe.h"
#include "show/record.h"
#include "show/schema.h"
#include "values/argument_meanings.h"
#include "values/notes.h"
#include "values/payload.h"
#include "values/rate_word.h"
#include "wire/lookup.h"
#include "wire/search.h"
#include "wire/topic.h"

using ordered_json = nlohmann::ordered_json;

static ordered_json head(const procedure_row& procedure) {
  ordered_json object = ordered_json::object();
  object["procedure"] = lookup_display_name(procedure);
  object["number"] = procedure.number;
  return object;
}

// A text under its name. "NAME_escaped" marks a text that is not UTF-8.
static void put_text(ordered_json& object, const std::string& name, std::string_view bytes) {
  bool escaped = false;
  object[name] = text_for_json(bytes, &escaped);
  if (escaped) object[name + "_escaped"] = true;
}

static ordered_json rate_value(uint16_t word) {
  const rate_word rate = rate_word_decode(word);
  ordered_json object = ordered_json::object();
  const unsigned tenths = (rate.kilobits + 50) / 100;
  object["mbit_s"] = rate.kilobits == 0 ? ordered_json() : ordered_json(tenths / 10.0);
  object["phy"] = rate.phy;
  object["mhz"] = rate.mhz;
  object["streams"] = rate.streams;
  object["mcs"] = rate.mcs;
  object["short_guard"] = rate.short_guard;
  object["word"] = word;
  return object;
}

static void put_field(ordered_json& object, const payload_field& field, std::string_view record) {
  const uint64_t number = payload_unsigned(field, record);
  if (!payload_is_known(field, record)) {
    object[field.name] = nullptr;
    return;
  }
  switch (field.type) {
    case field_type::kText:
      put_text(object, field.name, payload_bytes(field, record));
      break;
    case field_type::kMac:
      object[field.name] = show_value(field, record);
      break;
    case field_type::kBytes:
      object[field.name] = text_hex(payload_bytes(field, record));
      break;
    case field_type::kRate:
      object[field.name] = rate_value(static_cast<uint16_t>(number));
      break;
    case field_type::kFlag:
      object[field.name] = number != 0;
      break;
    case field_type::kU8:
    case field_type::kI8:
    case field_type::kU16:
    case field_type::kU32:
    case field_type::kI32:
    case field_type::kU64:
    case field_type::kI64:
    case field_type::kCounter32:
    case field_type::kCounter64:
    case field_type::kCounterI64:
    case field_type::kRate1024:
    case field_type::kBssPosition:
    case field_type::kTime:
      if (payload_is_signed(field.type))
        object[field.name] = payload_signed(field, record);
      else
        object[field.name] = number;
  }
}

static ordered_json record_value(const payload_layout& layout, std::string_view record) {
  ordered_json object = json_fields(layout.fields, record);
  if (layout.rows == nullptr) return object;
  const payload_rows& rows = *layout.rows;
  ordered_json& list = object[rows.name] = ordered_json::array();
  for (uint32_t i = 0; i < payload_row_count(rows, record); ++i)
    list.push_back(json_fields(rows.fields, payload_row(rows, record, i)));
  return object;
}

static void put_payload(ordered_json& object, const procedure_row& procedure,
                        const decoded_reply& reply) {
  const payload_layout* layout = payload_find(procedure);
  switch (procedure.payload) {
    case payload_kind::INT:
      if (payload_is_known(payload_value(procedure).unknown, reply.value))
        object["value"] = reply.value;
      else
        object["value"] = nullptr;
      break;
    case payload_kind::TEXT:
      put_text(object, "value", reply.text);
      break;
    case payload_kind::WORDS:
    case payload_kind::IMAGE:
      if (layout != nullptr) object["value"] = record_value(*layout, reply.data);
      break;
    case payload_kind::CODE:
    case payload_kind::NONE:
      break;
  }
}

static ordered_json describe_argument(const procedure_row& procedure,
                                      const argument_spec& argument) {
  ordered_json object = ordered_json::object();
  object["name"] = argument.name;
  object["type"] = describe_type(argument);
  object["meaning"] = meanings_text(procedure, argument);
  object["schema"] = schema_of_argument(procedure, argument);
  return object;
}

static ordered_json describe_fields(std::span<const payload_field> fields) {
  ordered_json list = ordered_json::array();
  for (const payload_field& field : fields) {
    ordered_json object = {{"name", field.name},
                           {"offset", field.offset},
                           {"bytes", payload_width(field)},
                           {"type", describe_field(field)}};
    if (*field.meaning != '\0') object["meaning"] = field.meaning;
    if (*field.unit != '\0') object["unit"] = field.unit;
    for (const int value : payload_unknown(field.unknown))
      object["not_known"].push_back(value);
    list.push_back(object);
  }
  return list;
}

std::string json_line(const ordered_json& value) {
  return value.dump(-1, ' ', true, ordered_json::error_handler_t::replace) + "\n";
}

ordered_json json_fields(std::span<const payload_field> fields, std::string_view record) {
  ordered_json object = ordered_json::object();
  for (const payload_field& field : fields)
    put_field(object, field, record);
  return object;
}

std::string json_error(const failure_report& failure, const std::string& time) {
  ordered_json object = {
      {"error",
       {{"kind", failure.kind}, {"message", failure.line}, {"exit_status", failure.status}}}};
  if (!time.empty()) object["time"] = time;
  return json_line(object);
}

nlohmann::ordered_json json_result(const procedure_row& procedure, const decoded_reply& reply) {
  ordered_json object = head(procedure);
  object["return_code"] = reply.code;
  if (procedure.inert) object["inert"] = true;
  if (reply.code >= 0) put_payload(object, procedure, reply);
  return object;
}

std::string json_reply(const procedure_row& procedure, const decoded_reply& reply) {
  return json_line(json_result(procedure, reply));
}

std::string json_sample(const procedure_row& procedure, const decoded_reply& reply,
                        const std::string& time) {
  ordered_json object = json_result(procedure, reply);
  object["time"] = time;
  return json_line(object);
}

std::string json_raw(uint32_t number, std::string_view result) {
  const procedure_row* procedure = lookup_number(number);
  ordered_json object = ordered_json::object();
  object["procedure"] =
      procedure == nullptr ? ordered_json() : ordered_json(lookup_display_name(*procedure));
  object["number"] = number;
  object["result"] = text_hex(result);
  return json_line(object);
}

std::string json_ping(double seconds) {
  ordered_json object = ordered_json::object();
  object["procedure"] = "ping";
  object["number"] = 0;
  object["round_trip_ms"] = std::round(seconds * 1e6) / 1e3;
  return json_line(object);
}

std::string json_list(const std::vector<const procedure_row*>& procedures) {
  ordered_json list = ordered_json::array();
  for (const procedure_row* procedure : procedures) {
    ordered_json object = head(*procedure);
    object["summary"] = procedure->summary;
    object["topic"] = topic_word(topic_of(*procedure));
    object["inert"] = procedure->inert;
    list.push_back(object);
  }
  return json_line(list);
}

std::string json_topics() {
  ordered_json list = ordered_json::array();
  for (const char* topic : topics())
    list.push_back({{"topic", topic_word(topic)},
                    {"title", topic},
                    {"procedures", search_procedures({"", topic}).size()}});
  return json_line(list);
}

std::string json_describe(const procedure_row& procedure) {
  ordered_json object = head(procedure);
  object["summary"] = procedure.summary;
  object["topic"] = topic_word(topic_of(procedure));
  object["inert"] = procedure.inert;
  object["needs"] = notes_needs(procedure);
  const std::string note = describe_note(procedure);
  if (!note.empty()) object["note"] = note;
  object["arguments"] = ordered_json::array();
  for (const argument_spec& argument : table_arguments(procedure))
    object["arguments"].push_back(describe_argument(procedure, argument));
  object["result"] = describe_result(procedure);
  const payload_layout* layout = payload_find(procedure);
  if (layout != nullptr) object["fields"] = describe_fields(layout->fields);
  if (layout != nullptr && layout->rows != nullptr)
    object["rows"] = {{"name", layout->rows->name},
                      {"capacity", layout->rows->capacity},
                      {"offset", layout->rows->first},
                      {"bytes", layout->rows->stride},
                      {"fields", describe_fields(layout->rows->fields)}};
  object["example"] = describe_example(procedure);
  return json_line(object);
}
