#include "json.h"

#include <nlohmann/json.hpp>

#include "describe.h"
#include "lookup.h"
#include "meanings.h"
#include "text.h"

namespace {

using Json = nlohmann::ordered_json;

// ASCII alone, so that no character of a text reaches the terminal as it is.
std::string line(const Json& value) {
  return value.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

Json head(const Procedure& procedure) {
  Json object = Json::object();
  object["procedure"] = lookup_display_name(procedure);
  object["number"] = procedure.number;
  return object;
}

void put_payload(Json& object, const Procedure& procedure, const Reply& reply) {
  bool escaped = false;
  switch (procedure.payload) {
    case Payload::INT:
      object["value"] = reply.value;
      break;
    case Payload::TEXT:
      object["value"] = text_for_json(reply.text, &escaped);
      if (escaped) object["escaped"] = true;
      break;
    case Payload::WORDS:
      object["words"] = reply.words;
      break;
    case Payload::IMAGE:
      object["data"] = text_hex(reply.data);
      break;
    case Payload::CODE:
    case Payload::NONE:
      break;
  }
}

Json describe_argument(const Procedure& procedure, const Argument& argument) {
  Json object = Json::object();
  object["name"] = argument.name;
  object["type"] = describe_type(argument);
  const Meaning* meaning = meanings_find(procedure, argument.name);
  if (meaning != nullptr) object["meaning"] = meaning->text;
  return object;
}

}  // namespace

std::string json_reply(const Procedure& procedure, const Reply& reply) {
  Json object = head(procedure);
  object["return_code"] = reply.code;
  if (reply.code >= 0) put_payload(object, procedure, reply);
  return line(object);
}

std::string json_raw(uint32_t number, std::string_view result) {
  const Procedure* procedure = lookup_number(number);
  Json object = Json::object();
  object["procedure"] = procedure == nullptr ? Json() : Json(lookup_display_name(*procedure));
  object["number"] = number;
  object["result"] = text_hex(result);
  return line(object);
}

std::string json_ping(double seconds) {
  Json object = Json::object();
  object["procedure"] = "ping";
  object["number"] = 0;
  object["round_trip_ms"] = seconds * 1000;
  return line(object);
}

std::string json_list(std::string_view pattern) {
  Json list = Json::array();
  for (const Procedure& procedure : table_procedures()) {
    if (!lookup_matches(procedure, pattern)) continue;
    Json object = head(procedure);
    object["summary"] = procedure.summary;
    list.push_back(object);
  }
  return line(list);
}

std::string json_describe(const Procedure& procedure) {
  Json object = head(procedure);
  object["summary"] = procedure.summary;
  object["inert"] = procedure.inert;
  object["arguments"] = Json::array();
  for (const Argument& argument : table_arguments(procedure))
    object["arguments"].push_back(describe_argument(procedure, argument));
  object["result"] = describe_result(procedure);
  object["example"] = describe_example(procedure);
  return line(object);
}
