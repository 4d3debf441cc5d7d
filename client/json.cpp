#include "json.h"

#include <nlohmann/json.hpp>

#include "describe.h"
#include "lookup.h"
#include "meanings.h"
#include "text.h"

namespace {

using ordered_json = nlohmann::ordered_json;

// ASCII alone, so that no character of a text reaches the terminal as it is.
std::string line(const ordered_json& value) {
  return value.dump(-1, ' ', true, ordered_json::error_handler_t::replace) + "\n";
}

ordered_json head(const procedure_row& procedure) {
  ordered_json object = ordered_json::object();
  object["procedure"] = lookup_display_name(procedure);
  object["number"] = procedure.number;
  return object;
}

void put_payload(ordered_json& object, const procedure_row& procedure, const decoded_reply& reply) {
  bool escaped = false;
  switch (procedure.payload) {
    case payload_kind::INT:
      object["value"] = reply.value;
      break;
    case payload_kind::TEXT:
      object["value"] = text_for_json(reply.text, &escaped);
      if (escaped) object["escaped"] = true;
      break;
    case payload_kind::WORDS:
      object["words"] = reply.words;
      break;
    case payload_kind::IMAGE:
      object["data"] = text_hex(reply.data);
      break;
    case payload_kind::CODE:
    case payload_kind::NONE:
      break;
  }
}

ordered_json describe_argument(const procedure_row& procedure, const argument_spec& argument) {
  ordered_json object = ordered_json::object();
  object["name"] = argument.name;
  object["type"] = describe_type(argument);
  const meaning_entry* meaning = meanings_find(procedure, argument.name);
  if (meaning != nullptr) object["meaning"] = meaning->text;
  return object;
}

}  // namespace

std::string json_reply(const procedure_row& procedure, const decoded_reply& reply) {
  ordered_json object = head(procedure);
  object["return_code"] = reply.code;
  if (reply.code >= 0) put_payload(object, procedure, reply);
  return line(object);
}

std::string json_raw(uint32_t number, std::string_view result) {
  const procedure_row* procedure = lookup_number(number);
  ordered_json object = ordered_json::object();
  object["procedure"] =
      procedure == nullptr ? ordered_json() : ordered_json(lookup_display_name(*procedure));
  object["number"] = number;
  object["result"] = text_hex(result);
  return line(object);
}

std::string json_ping(double seconds) {
  ordered_json object = ordered_json::object();
  object["procedure"] = "ping";
  object["number"] = 0;
  object["round_trip_ms"] = seconds * 1000;
  return line(object);
}

std::string json_list(std::string_view pattern) {
  ordered_json list = ordered_json::array();
  for (const procedure_row& procedure : table_procedures()) {
    if (!lookup_matches(procedure, pattern)) continue;
    ordered_json object = head(procedure);
    object["summary"] = procedure.summary;
    list.push_back(object);
  }
  return line(list);
}

std::string json_describe(const procedure_row& procedure) {
  ordered_json object = head(procedure);
  object["summary"] = procedure.summary;
  object["inert"] = procedure.inert;
  object["arguments"] = ordered_json::array();
  for (const argument_spec& argument : table_arguments(procedure))
    object["arguments"].push_back(describe_argument(procedure, argument));
  object["result"] = describe_result(procedure);
  object["example"] = describe_example(procedure);
  return line(object);
}
