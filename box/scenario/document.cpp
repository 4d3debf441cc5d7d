// Scenarios as texts: parsed, shipped, loaded, listed.
#include "scenario/document.h"

#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>

#include <algorithm>
#include <numeric>
#include <set>
#include <sstream>

#include "base/files.h"
#include "base/report.h"
#include "scenario/parts.h"
#include "trap/faults.h"

// Records where parsing failed.
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
                  detail == std::string::npos ? "not JSON" : listener.message.substr(detail));
  return false;
}

static std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ::tolower);
  return text;
}

static scenario_json member(const scenario_json& object, const char* name) {
  return object.is_object() ? object.value(name, scenario_json()) : scenario_json();
}

static void check_ids(const scenario_json& document, const char* name, const char* id_name,
                      std::vector<scenario_finding>& findings) {
  scenario_json list = member(document, name);
  std::set<std::string> seen;
  for (size_t i = 0; list.is_array() && i < list.size(); ++i) {
    scenario_json id = member(list[i], id_name);
    if (!id.is_string()) continue;
    std::string text = lower(id.get<std::string>());
    if (seen.insert(text).second) continue;
    findings.push_back({{name, "[" + std::to_string(i) + "]", id_name}, text + " appears twice"});
  }
}

// Applies an event to the document as earlier events have left it; returns what is wrong.
static std::string wrong_with_set(scenario_json& document, const std::string& line) {
  scenario_json changed = document;
  std::string wrong;
  if (!scenario_change(changed, scenario_words(line), wrong)) return wrong;
  if (auto findings = scenario_check(changed); !findings.empty()) {
    return scenario_finding_text(findings[0]);
  }
  document = changed;
  return "";
}

static std::string wrong_with_fail(const std::string& line) {
  std::vector<std::string> words = scenario_words(line);
  fault_rule rule;
  std::string wrong;
  if (words.size() == 1 && words[0] == kFaultClear) return "";
  return fault_parse_words(words, rule, wrong) ? "" : wrong;
}

// The indexes of the events, in the order of their times.
static std::vector<size_t> in_order(const scenario_json& events) {
  std::vector<size_t> order(events.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
    return events[a].value("at", 0.0) < events[b].value("at", 0.0);
  });
  return order;
}

// Only for a document that satisfies the schema.
static void check_events(scenario_json document, std::vector<scenario_finding>& findings) {
  const scenario_json events = document.value("events", scenario_json::array());
  for (size_t i : in_order(events)) {
    bool sets = events[i].contains("set");
    const char* name = sets ? "set" : "fail";
    std::string line = events[i][name].get<std::string>();
    std::string wrong = sets ? wrong_with_set(document, line) : wrong_with_fail(line);
    if (!wrong.empty())
      findings.push_back({{"events", "[" + std::to_string(i) + "]", name}, wrong});
  }
}

// Checks the schema and what it cannot express: unique ids, and valid words in events.
static std::vector<scenario_finding> check_all(const scenario_json& document) {
  std::vector<scenario_finding> findings = scenario_check(document);
  bool keeps_to_schema = findings.empty();
  check_ids(document, "stations", "mac", findings);
  check_ids(document, "neighbours", "bssid", findings);
  if (keeps_to_schema) check_events(document, findings);
  return findings;
}

// All findings as text, in the order of their lines.
static std::string told(const std::string& text, const std::string& name,
                        const std::vector<scenario_finding>& findings) {
  std::vector<std::pair<int, std::string>> lines;
  for (const scenario_finding& finding : findings)
    lines.emplace_back(scenario_line(text, finding.path), scenario_finding_text(finding));
  std::stable_sort(lines.begin(), lines.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::string all;
  for (const auto& [line, message] : lines)
    all += (all.empty() ? "" : "\n") + at_line(name, line, message);
  return all;
}

bool scenario_parse(const std::string& text, const std::string& name, scenario& s,
                    std::string& wrong) {
  scenario_json document;
  if (!read_document(text, name, document, wrong)) return false;
  wrong = told(text, name, check_all(document));
  if (!wrong.empty()) return false;
  scenario_fill(document, s);
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
  std::istringstream lines(wrong);
  for (std::string line; std::getline(lines, line);)
    report("%s", line.c_str());
  return false;
}

int scenario_print_list() {
  for (const char* name : scenario_all()) {
    scenario_json document = scenario_json::parse(scenario_shipped(name), nullptr, false);
    printf("%-10s %s\n", name, document.value("description", std::string()).c_str());
  }
  return 0;
}

int scenario_print(const std::string& name) {
  std::string_view text = name == "schema" ? scenario_schema() : scenario_shipped(name);
  if (text.empty()) {
    report("there is no built-in scenario \"%s\", only %s", name.c_str(), scenario_names().c_str());
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
