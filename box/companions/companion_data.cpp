#include "companions/companion_data.h"

#include <cstdio>

#include "base/files.h"
#include "scenario/document.h"

using nlohmann::json;

static json member_of(const json& object, const char* member) {
  if (!object.is_object()) return nullptr;
  auto found = object.find(member);
  return found == object.end() ? json() : *found;
}

static json document() {
  return json::parse(file_read(kScenarioPath), nullptr, false);
}

json companion_data(const char* name) {
  json data = member_of(member_of(document(), "companions"), name);
  return data.is_object() ? data : json::object();
}

double companion_speed() {
  double speed = companion_number(document(), "speed", 1);
  return speed > 0 ? speed : 1;
}

double companion_number(const json& object, const char* member, double otherwise) {
  json found = member_of(object, member);
  if (found.is_boolean()) return found.get<bool>() ? 1 : 0;
  return found.is_number() ? found.get<double>() : otherwise;
}

std::string companion_text(const json& object, const char* member, const std::string& otherwise) {
  json found = member_of(object, member);
  if (found.is_number_integer()) return std::to_string(found.get<long long>());
  return found.is_string() ? found.get<std::string>() : otherwise;
}

std::string companion_behaviour(const json& object) {
  return companion_text(object, "behaviour", "normal");
}

std::string companion_mac(const std::string& text) {
  unsigned b[6] = {};
  if (sscanf(text.c_str(), "%2x:%2x:%2x:%2x:%2x:%2x", &b[0], &b[1], &b[2], &b[3], &b[4], &b[5]) !=
      6) {
    return std::string(6, '\0');
  }
  std::string mac;
  for (unsigned byte : b)
    mac.push_back(static_cast<char>(byte));
  return mac;
}
