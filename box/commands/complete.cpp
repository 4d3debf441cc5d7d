#include "commands/complete.h"

#include <cstdio>

#include "base/board.h"
#include "base/files.h"
#include "control/connection.h"
#include "control/reach.h"
#include "scenario/parts.h"
#include "trap/faults.h"

using words_list = std::vector<std::string>;

static words_list boards() {
  words_list names;
  for (const board& b : board_all())
    names.push_back(b.name);
  return names;
}

static words_list scenarios(const char* more) {
  words_list names(scenario_all().begin(), scenario_all().end());
  names.push_back(more);
  return names;
}

static words_list whats(const std::string& current) {
  words_list names = fault_names();
  size_t at = current.find('@');
  if (at == std::string::npos) {
    names.insert(names.begin(), {kFaultList, kFaultClear});
    return names;
  }
  names.clear();
  for (int n = 0; n < kBoardMaxInterfaces; ++n)
    names.push_back(current.substr(0, at) + "@ra" + std::to_string(n));
  return names;
}

static words_list hows(const words_list& before) {
  bool takes_none = !before.empty() && (before[0] == kFaultList || before[0] == kFaultClear);
  return takes_none ? words_list() : fault_hows();
}

// The current scenario of that box; an empty object if there is none.
static scenario_json document_of(const std::string& box) {
  std::string root;
  if (!reach_root(box, root)) return scenario_json::object();
  scenario_json document = scenario_json::parse(file_read(root + kScenarioPath), nullptr, false);
  return document.is_object() ? document : scenario_json::object();
}

static const scenario_kind* kind_named(const std::string& name) {
  for (const scenario_kind& kind : scenario_kinds()) {
    if (name == kind.name) return &kind;
  }
  return nullptr;
}

static words_list kinds() {
  words_list names;
  for (const scenario_kind& kind : scenario_kinds())
    names.push_back(kind.name);
  return names;
}

// Adds the names of the schema's members; dots join those of nested ones.
static void add_keys(const scenario_json& schema, const std::string& head, words_list& keys) {
  for (const auto& [name, given] : schema["properties"].items()) {
    const scenario_json& below = scenario_schema_resolve(given);
    if (below.contains("properties")) {
      add_keys(below, head + name + ".", keys);
    } else {
      keys.push_back(head + name);
    }
  }
}

static words_list keys_at(const words_list& path) {
  words_list keys;
  const scenario_json* schema = scenario_schema_at(path);
  if (schema && schema->contains("properties")) add_keys(*schema, "", keys);
  return keys;
}

// What WHICH may be: the ids in the box, all BSSs, the radios, or the members of the companions.
static words_list ids(const scenario_kind& kind, const std::string& box) {
  words_list found;
  if (!kind.id) {
    if (std::string(kind.list) == "companions") return keys_at({kind.list});
    const scenario_json* schema = scenario_schema_at({kind.list});
    if (!schema->contains("properties")) return {};
    for (const auto& [name, below] : (*schema)["properties"].items())
      found.push_back(name);
    return found;
  }
  const scenario_json* schema = scenario_schema_at({kind.list, "[]", kind.id});
  if (schema->contains("maximum")) {
    for (int n = schema->value("minimum", 1); n <= schema->value("maximum", 0); ++n)
      found.push_back(std::to_string(n));
    return found;
  }
  for (const scenario_json& thing : document_of(box).value(kind.list, scenario_json::array()))
    found.push_back(thing.value(kind.id, std::string()));
  return found;
}

// Adds "outcome=success" and so on, if the schema lists the values.
static void add_values(const std::string& key, const words_list& path, words_list& offers) {
  words_list whole = path;
  std::string step;
  for (size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
    end = key.find('.', start);
    whole.push_back(key.substr(start, end - start));
  }
  const scenario_json& schema = *scenario_schema_at(whole);
  scenario_json values = schema.value("enum", scenario_json::array());
  if (schema.value("type", std::string()) == "boolean") values = {true, false};
  for (const scenario_json& value : values)
    offers.push_back(key + "=" + (value.is_string() ? value.get<std::string>() : value.dump()));
}

static words_list keys_of(const scenario_kind& kind, const words_list& before,
                          const std::string& current) {
  words_list offers, path = {kind.list, kind.id ? "[]" : before[1]};
  size_t equals = current.find('=');
  for (const std::string& key : keys_at(path)) {
    if (kind.id && key == kind.id) continue;
    if (equals == std::string::npos) {
      offers.push_back(key + "=");
    } else if (key == current.substr(0, equals)) {
      add_values(key, path, offers);
    }
  }
  if (kind.id && before.size() == 2) offers.push_back("gone");
  return offers;
}

static words_list settings(const words_list& before, const std::string& current,
                           const std::string& box) {
  if (before.empty()) return kinds();
  const scenario_kind* kind = kind_named(before[0]);
  if (!kind) return {};
  if (before.size() == 1) return ids(*kind, box);
  bool has_keys = kind->id || std::string(kind->list) == "radios";
  return has_keys ? keys_of(*kind, before, current) : words_list();
}

words_list complete_value(const std::string& word, const words_list& before,
                          const std::string& current, const std::string& box) {
  if (word == "--board") return boards();
  if (word == "--scenario") return scenarios(kCompleteFiles);
  if (word == "--box") return reach_names();
  if (word == "--log" || word == "FILE") return {kCompleteFiles};
  if (word == "NAME") return scenarios("schema");
  if (word == "WHAT") return whats(current);
  if (word == "HOW") return hows(before);
  if (word == "KIND") return settings(before, current, box);
  if (word == "SHELL") return complete_shells();
  return {};
}

int complete_print(const words_list& offers) {
  for (const std::string& offer : offers)
    puts(offer.c_str());
  return 0;
}
