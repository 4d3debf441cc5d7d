#include "plan/facts.h"

#include <cstdlib>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

using json = nlohmann::ordered_json;

static std::string text_of(const json& line, const char* name) {
  auto member = line.find(name);
  return member != line.end() && member->is_string() ? member->get<std::string>() : "";
}

static int field_of(const json& line) {
  std::string field = text_of(line, "field");
  return field.empty() ? -1 : atoi(field.c_str());
}

static const char* interface_of_file(const std::string& file) {
  return file.find("_5.dat") == std::string::npos ? "ra0" : "ra8";
}

// Of several changes of a value the first gives what it was, the last what it is.
static void add_setting(plan& p, const json& line) {
  plan_setting setting = {text_of(line, "file"),
                          text_of(line, "key"),
                          field_of(line),
                          line.contains("before"),
                          line.contains("after"),
                          text_of(line, "before"),
                          text_of(line, "after"),
                          line.value("secret", false),
                          false,
                          interface_of_file(text_of(line, "file"))};
  auto known = std::find_if(p.settings.begin(), p.settings.end(), [&](const plan_setting& s) {
    return s.file == setting.file && s.key == setting.key && s.field == setting.field;
  });
  if (known == p.settings.end()) {
    p.settings.push_back(setting);
    return;
  }
  known->has = setting.has;
  known->after = setting.after;
  if (known->had == known->has && known->before == known->after) p.settings.erase(known);
}

static void add_beacon(plan& p, const json& line, double time) {
  std::string what = text_of(line, "what"), interface = text_of(line, "interface");
  if (what == "stops") p.outages.push_back({interface, "", time, -1});
  if (what != "begins") return;
  for (plan_outage& outage : p.outages) {
    if (outage.interface != interface || outage.seconds >= 0) continue;
    outage.seconds = time - outage.from;
    outage.ssid = text_of(line, "ssid");
  }
}

// A station that comes or goes as its scenario has it is no effect of the command.
static bool is_of_scenario(const std::string& why) {
  return why == "appeared" || why == "switched off" || why == "scenario";
}

static void come_back(plan& p, const std::string& mac, const std::string& interface, double time) {
  for (plan_station& station : p.stations) {
    if (station.mac != mac || !station.back_on.empty()) continue;
    station.back_on = interface;
    station.seconds = time - station.from;
  }
}

static void add_station(plan& p, const json& line, double time) {
  std::string what = text_of(line, "what"), mac = text_of(line, "mac"), why = text_of(line, "why");
  std::string interface = text_of(line, "interface");
  if (is_of_scenario(why)) return;
  if (what == "joins") return come_back(p, mac, interface, time);
  std::string from = what == "roams" ? text_of(line, "from") : interface;
  bool is_home = what == "roams" && why == "on air";
  if (is_home) return come_back(p, mac, interface, time);
  p.stations.push_back({mac, from, why, time, what == "roams" ? interface : "", 0});
}

static void count(std::vector<plan_line>& lines, const std::string& text, const json& line,
                  bool failed) {
  std::string call = text_of(line, "call");
  for (plan_line& known : lines) {
    if (known.text == text && known.call == call && known.failed == failed) {
      ++known.count;
      return;
    }
  }
  lines.push_back({text, call, 1, failed});
}

static std::string members_of(const json& line, std::initializer_list<const char*> names) {
  std::string text;
  for (const char* name : names) {
    std::string member = text_of(line, name);
    if (!member.empty()) text += (text.empty() ? "" : " ") + member;
  }
  return text;
}

static void add_request(plan& p, const json& line) {
  bool failed = line.value("result", 0) < 0;
  std::string name = text_of(line, "name");
  if (line.contains("module")) {
    return count(p.modules,
                 name.starts_with("delete") ? text_of(line, "module") + " out"
                                            : text_of(line, "module") + " in",
                 line, failed);
  }
  std::string text = members_of(line, {"interface", "name", "object", "text", "error"});
  if (!text_of(line, "interface").empty() && name != "profile")
    count(p.requests, text, line, failed);
}

// What many commands exit with is an answer, not a failure: pgrep finds nothing.
static void add_command(plan& p, const json& line) {
  int status = line.value("status", 0);
  std::string end = status == 0 ? "" : " -> status " + std::to_string(status);
  if (!line.contains("status")) end = " -> signal " + text_of(line, "signal");
  count(p.commands, text_of(line, "line") + end, line, false);
}

static void add_message(plan& p, const json& line) {
  std::string text =
      members_of(line, {"to", "type", "name", "value", "text", "level", "bare_text"});
  count(p.messages, text, line, false);
}

static void add_effect(plan& p, const json& line, double time) {
  std::string effect = text_of(line, "effect");
  if (effect == "key") add_setting(p, line);
  if (effect == "beacon") add_beacon(p, line, time);
  if (effect == "station") add_station(p, line, time);
  if (effect == "command") add_command(p, line);
  if (effect == "process") {
    count(p.companions, members_of(line, {"companion", "what", "signal"}), line, false);
  }
  if (effect == "file") count(p.files, members_of(line, {"path", "what"}), line, false);
  if (effect == "datagram") add_message(p, line);
}

void facts_add(plan& p, const std::string& lines) {
  std::istringstream rest(lines);
  double start = -1;
  for (std::string text; std::getline(rest, text);) {
    json line = json::parse(text, nullptr, false);
    if (!line.is_object()) continue;
    double time = line.value("box_time", 0.0);
    if (start < 0) start = time;
    if (line.contains("effect")) {
      add_effect(p, line, time - start);
    } else {
      add_request(p, line);
    }
  }
}

void facts_mark_pending(plan& p, const std::string& pending) {
  json list = json::parse(pending, nullptr, false);
  if (!list.is_array()) return;
  for (plan_setting& setting : p.settings) {
    setting.is_pending = std::any_of(list.begin(), list.end(), [&](const json& entry) {
      return text_of(entry, "file") == setting.file && text_of(entry, "key") == setting.key &&
             entry.value("field", -1) == setting.field;
    });
  }
}
