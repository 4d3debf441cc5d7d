// Scenarios as texts: parsed, shipped, loaded, listed.
#include "scenario.h"

#include <errno.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <set>

#include "files.h"
#include "report.h"
#include "scenario_parts.h"

// The files of box/share are part of the program. The build passes their directory.
#define EMBED(symbol, file)                                                            \
  asm(".section .rodata\n" #symbol                                                     \
      "_begin:"                                                                        \
      ".incbin \"" SHARE_DIRECTORY "/" file "\"\n" #symbol "_end:\n.byte 0\n.text\n"); \
  extern "C" const char symbol##_begin[], symbol##_end[]

EMBED(scenario_schema_text, "scenario.schema.json");
EMBED(scenario_minimal_text, "minimal.json");
EMBED(scenario_apartment_text, "apartment.json");
EMBED(scenario_mesh_text, "mesh.json");

static std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<size_t>(end - begin)};
}

static constexpr const char* kNames[] = {"minimal", "apartment", "mesh"};

std::string_view scenario_shipped(std::string_view name) {
  if (name == kNames[0]) return between(scenario_minimal_text_begin, scenario_minimal_text_end);
  if (name == kNames[1]) return between(scenario_apartment_text_begin, scenario_apartment_text_end);
  if (name == kNames[2]) return between(scenario_mesh_text_begin, scenario_mesh_text_end);
  return {};
}

std::string_view scenario_schema() {
  return between(scenario_schema_text_begin, scenario_schema_text_end);
}

std::string scenario_names() {
  std::string names;
  for (const char* name : kNames)
    names += (names.empty() ? "" : ", ") + std::string(name);
  return names;
}

// Notes where the parser stumbles.
struct syntax_listener : nlohmann::json_sax<scenario_json> {
  size_t position = 0;
  std::string message;
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t) override { return true; }
  bool number_unsigned(number_unsigned_t) override { return true; }
  bool number_float(number_float_t, const string_t&) override { return true; }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(size_t) override { return true; }
  bool key(string_t&) override { return true; }
  bool end_object() override { return true; }
  bool start_array(size_t) override { return true; }
  bool end_array() override { return true; }
  bool parse_error(size_t at, const std::string&, const nlohmann::detail::exception& e) override {
    position = at;
    message = e.what();
    return false;
  }
};

static std::string at_line(const std::string& name, int line, const std::string& message) {
  return name + ":" + std::to_string(line) + ": " + message;
}

static bool read_document(const std::string& text, const std::string& name, scenario_json& document,
                          std::string& wrong) {
  document = scenario_json::parse(text, nullptr, false);
  if (!document.is_discarded()) return true;
  syntax_listener listener;
  scenario_json::sax_parse(text, &listener);
  size_t read = std::min(listener.position, text.size());
  size_t before = read > 0 ? read - 1 : 0;
  auto end = text.begin() + static_cast<ptrdiff_t>(before);
  int line = 1 + static_cast<int>(std::count(text.begin(), end, '\n'));
  size_t detail = listener.message.find("syntax error");
  wrong = at_line(name, line,
                  detail == std::string::npos ? "no JSON" : listener.message.substr(detail));
  return false;
}

// What the schema cannot say: ids are unique, and events are words that can be set.
static bool check_meaning(const scenario_json& document, scenario_finding& finding) {
  for (auto [list, id] : {std::pair{"stations", "mac"}, {"neighbours", "bssid"}}) {
    std::set<std::string> seen;
    for (size_t i = 0; document.contains(list) && i < document[list].size(); i++) {
      std::string key = document[list][i][id].get<std::string>();
      std::transform(key.begin(), key.end(), key.begin(), ::tolower);
      if (seen.insert(key).second) continue;
      finding = {{list, "[" + std::to_string(i) + "]", id}, key + " is there twice"};
      return false;
    }
  }
  for (size_t i = 0; document.contains("events") && i < document["events"].size(); i++) {
    scenario_json changed = document;
    scenario_finding below;
    std::string words = document["events"][i]["set"].get<std::string>(), wrong;
    if (scenario_change(changed, scenario_words(words), wrong)) {
      if (scenario_check(changed, below)) continue;
      wrong = scenario_finding_text(below);
    }
    finding = {{"events", "[" + std::to_string(i) + "]", "set"}, wrong};
    return false;
  }
  return true;
}

bool scenario_parse(const std::string& text, const std::string& name, scenario& s,
                    std::string& wrong) {
  scenario_json document;
  scenario_finding finding;
  if (!read_document(text, name, document, wrong)) return false;
  if (!scenario_check(document, finding) || !check_meaning(document, finding)) {
    wrong = at_line(name, scenario_line(text, finding.path), scenario_finding_text(finding));
    return false;
  }
  scenario_fill(document, s);
  wrong.clear();
  return true;
}

bool scenario_load(const std::string& name_or_file, scenario& s) {
  std::string_view shipped = scenario_shipped(name_or_file);
  std::string text(shipped), wrong;
  if (shipped.empty()) {
    if (access(name_or_file.c_str(), R_OK) != 0) {
      std::string hint = "the scenarios that ship are " + scenario_names();
      return report_errno(hint.c_str(), "read the scenario %s", name_or_file.c_str());
    }
    struct stat file;
    if (stat(name_or_file.c_str(), &file) == 0 && S_ISDIR(file.st_mode)) {
      report("%s is a directory, not a scenario", name_or_file.c_str());
      return false;
    }
    text = file_read(name_or_file);
  }
  if (scenario_parse(text, name_or_file, s, wrong)) return true;
  report("%s", wrong.c_str());
  return false;
}

int scenario_print_list() {
  for (const char* name : kNames) {
    scenario_json document = scenario_json::parse(scenario_shipped(name), nullptr, false);
    printf("%-10s %s\n", name, document.value("description", std::string()).c_str());
  }
  return 0;
}

int scenario_print(const std::string& name) {
  std::string_view text = name == "schema" ? scenario_schema() : scenario_shipped(name);
  if (text.empty()) {
    report("no scenario \"%s\" ships: there are %s", name.c_str(), scenario_names().c_str());
    return kExitUsage;
  }
  fwrite(text.data(), 1, text.size(), stdout);
  return 0;
}

int scenario_print_check(const std::string& file) {
  scenario s;
  if (!scenario_load(file, s)) return kExitUsage;
  printf("%s: good: %zu stations, %zu neighbours, %zu events\n", file.c_str(), s.stations.size(),
         s.neighbours.size(), s.events.size());
  return 0;
}
