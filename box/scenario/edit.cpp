// `gwbox set`: changes a scenario word by word.
#include "client/base/text.h"
#include "scenario/parts.h"

static std::vector<std::string> split(const std::string& text, char at) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (size_t end; (end = text.find(at, start)) != std::string::npos; start = end + 1)
    parts.push_back(text.substr(start, end - start));
  parts.push_back(text.substr(start));
  return parts;
}

std::vector<std::string> scenario_words(const std::string& line) {
  std::vector<std::string> words;
  char quote = 0;
  bool open = false;
  for (char c : line) {
    bool is_blank = c == ' ' || c == '\t', is_quote = c == '"' || c == '\'';
    if (quote == 0 && is_blank) {
      open = false;
      continue;
    }
    if (!open) words.emplace_back();
    open = true;
    if (c == quote) {
      quote = 0;
    } else if (quote == 0 && is_quote) {
      quote = c;
    } else {
      words.back() += c;
    }
  }
  return words;
}

// A value stays a text if the schema wants one; otherwise it is read as JSON if it is any.
static scenario_json read_value(const std::string& text, const scenario_json* schema) {
  bool wants_text = schema && schema->value("type", std::string()) == "string";
  scenario_json value =
      wants_text ? scenario_json(text) : scenario_json::parse(text, nullptr, false);
  return value.is_discarded() ? scenario_json(text) : value;
}

// Sets the value that the names of STEPS lead to from OBJECT; "gone" removes it.
static bool put(scenario_json& object, const std::vector<std::string>& steps,
                const std::string& text, const scenario_json* schema, std::string& wrong) {
  scenario_json* at = &object;
  for (size_t i = 0; i < steps.size(); ++i) {
    bool last = i + 1 == steps.size();
    if (at->is_null()) *at = scenario_json::object();
    if (at->is_array()) {
      bool is_index = !steps[i].empty() && steps[i].size() < 6 &&
                      steps[i].find_first_not_of("0123456789") == std::string::npos;
      size_t index = is_index ? std::stoul(steps[i]) : at->size();
      if (index >= at->size()) {
        wrong =
            "there is no element \"" + steps[i] + "\" in a list of " + std::to_string(at->size());
        return false;
      }
      if (last && text == "gone") return at->erase(index), true;
      at = &(*at)[index];
    } else if (!at->is_object() || steps[i].empty()) {
      wrong =
          (i > 0 ? "\"" + steps[i - 1] + "\" has" : "there is") + " no member \"" + steps[i] + "\"";
      return false;
    } else {
      if (last && text == "gone") return at->erase(steps[i]), true;
      at = &(*at)[steps[i]];
    }
  }
  *at = read_value(text, schema);
  return true;
}

static bool put_word(scenario_json& object, std::vector<std::string> schema_path,
                     const std::string& word, std::string& wrong) {
  size_t equals = word.find('=');
  if (equals == std::string::npos || equals == 0) {
    wrong = "\"" + word + "\" is not of the form key=value";
    return false;
  }
  std::vector<std::string> steps = split(word.substr(0, equals), '.');
  for (const std::string& step : steps) {
    if (!step.empty()) schema_path.push_back(step);
  }
  return put(object, steps, word.substr(equals + 1), scenario_schema_at(schema_path), wrong);
}

static bool put_words(scenario_json& object, const std::vector<std::string>& schema_path,
                      const std::vector<std::string>& words, std::string& wrong) {
  if (words.size() < 3) {
    wrong = "nothing to set: expected key=value";
    return false;
  }
  for (size_t i = 2; i < words.size(); ++i) {
    if (!put_word(object, schema_path, words[i], wrong)) return false;
  }
  return true;
}

static bool is_id(const scenario_json& value, const std::string& id) {
  if (value.is_number()) return value.dump() == id;
  mac_address a, b;
  return value.is_string() && mac_parse(value.get<std::string>(), a) && mac_parse(id, b) && a == b;
}

static bool change_listed(scenario_json& document, const scenario_kind& kind,
                          const std::vector<std::string>& words, std::string& wrong) {
  scenario_json& list = document[kind.list];
  if (list.is_null()) list = scenario_json::array();
  size_t at = 0;
  while (at < list.size() && !is_id(list[at][kind.id], words[1]))
    ++at;
  bool is_new = at == list.size();
  if (words.size() == 3 && words[2] == "gone") {
    if (is_new) wrong = "there is no " + words[0] + " " + words[1];
    if (!is_new) list.erase(at);
    return !is_new;
  }
  if (is_new) {
    const scenario_json* schema = scenario_schema_at({kind.list, "[]", kind.id});
    list.push_back(scenario_json::object({{kind.id, read_value(words[1], schema)}}));
  }
  return put_words(list[at], {kind.list, "[]"}, words, wrong);
}

static bool change_radio(scenario_json& document, const scenario_kind& kind,
                         const std::vector<std::string>& words, std::string& wrong) {
  return put_words(document[kind.list][words[1]], {kind.list, words[1]}, words, wrong);
}

static bool change_companion(scenario_json& document, const scenario_kind& kind,
                             const std::vector<std::string>& words, std::string& wrong) {
  wrong = "expected \"companion PATH VALUE\"";
  if (words.size() != 3) return false;
  return put(document[kind.list], split(words[1], '.'), words[2], nullptr, wrong);
}

static bool change_speed(scenario_json& document, const scenario_kind& kind,
                         const std::vector<std::string>& words, std::string& wrong) {
  wrong = "expected \"speed FACTOR\"";
  if (words.size() != 2) return false;
  document[kind.list] = read_value(words[1], nullptr);
  return true;
}

static constexpr scenario_kind kKinds[] = {
    {"station", "stations", "mac", change_listed},
    {"neighbour", "neighbours", "bssid", change_listed},
    {"nonassoc", "nonassoc", "mac", change_listed},
    {"bss", "bss", "bss", change_listed},
    {"radio", "radios", nullptr, change_radio},
    {"companion", "companions", nullptr, change_companion},
    {"speed", "speed", nullptr, change_speed},
};

std::span<const scenario_kind> scenario_kinds() {
  return kKinds;
}

std::string scenario_kind_names() {
  std::string names;
  for (const scenario_kind& kind : kKinds) {
    bool first = &kind == kKinds, last = &kind + 1 == std::end(kKinds);
    names += (first ? "" : last ? " or " : ", ") + std::string(kind.name);
  }
  return names;
}

bool scenario_change(scenario_json& document, const std::vector<std::string>& words,
                     std::string& wrong) {
  std::string word = words.empty() ? "" : words[0];
  for (const scenario_kind& kind : kKinds) {
    if (word != kind.name) continue;
    if (words.size() > 1) return kind.change(document, kind, words, wrong);
    wrong = "expected more after \"" + word + "\"";
    return false;
  }
  wrong = (word.empty() ? "" : text_quote(word) + " cannot be set: ") + "expected " +
          scenario_kind_names();
  return false;
}

// Names the thing by its id: its place in the list means nothing to whoever sets it.
static std::string finding_text(const scenario_json& document, scenario_finding finding) {
  if (finding.path.size() < 2 || finding.path[1][0] != '[') return scenario_finding_text(finding);
  for (const scenario_kind& kind : kKinds) {
    if (!kind.id || finding.path[0] != kind.list) continue;
    size_t at = std::stoul(finding.path[1].substr(1));
    const scenario_json& id = document[kind.list][at][kind.id];
    std::string said = kind.name;
    said.append(" ").append(id.is_string() ? id.get<std::string>() : id.dump()).append(": ");
    finding.path.erase(finding.path.begin(), finding.path.begin() + 2);
    return said + (finding.path.empty() ? finding.message : scenario_finding_text(finding));
  }
  return scenario_finding_text(finding);
}

bool scenario_edit(scenario& s, const std::vector<std::string>& words, std::string& wrong) {
  scenario_json document = scenario_json::parse(s.text, nullptr, false);
  wrong.clear();
  if (!scenario_change(document, words, wrong)) return false;
  if (auto findings = scenario_check(document); !findings.empty()) {
    wrong = finding_text(document, findings[0]);
    return false;
  }
  scenario_fill(document, s);
  wrong.clear();
  return true;
}

bool scenario_edit_line(scenario& s, const std::string& line, std::string& wrong) {
  return scenario_edit(s, scenario_words(line), wrong);
}

void scenario_set_speed(scenario& s, double speed) {
  scenario_json document = scenario_json::parse(s.text, nullptr, false);
  document["speed"] = speed;
  scenario_fill(document, s);
}
