// The caller's side of `gwbox status`: tables.
#include <libsmartcols.h>
#include <locale.h>
#include <wchar.h>
#include <cstdio>
#include <cstdlib>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/columns.h"
#include "client/base/text.h"
#include "control/ask.h"
#include "control/status.h"

using json = nlohmann::ordered_json;

static constexpr size_t kSsidWidth = 32;
static constexpr size_t kSecurityWidth = 16;

static constexpr column kInterfaces[] = {{"NAME", 4, 0},     {"STATE", 5, 0},
                                         {"SSID", 0, 0},     {"CH", 3, SCOLS_FL_RIGHT},
                                         {"SECURITY", 0, 0}, {"STA", 3, SCOLS_FL_RIGHT}};

static constexpr column kStations[] = {{"STATION", 17, 0},
                                       {"ON", 5, 0},
                                       {"RSSI", 0.2, SCOLS_FL_TRUNC},
                                       {"SENT AT", 0.2, SCOLS_FL_TRUNC},
                                       {"FOR", 6, SCOLS_FL_RIGHT},
                                       {"BTM", 3, 0}};

static std::string bytes_of(const std::string& digits) {
  std::string bytes;
  for (size_t at = 0; at + 1 < digits.size(); at += 2)
    bytes += static_cast<char>(std::stoi(digits.substr(at, 2), nullptr, 16));
  return bytes;
}

static std::string ssid_of(const json& interface) {
  std::string bytes = interface.contains("ssid_hex")
                          ? bytes_of(interface.value("ssid_hex", std::string()))
                          : interface.value("ssid", std::string());
  std::string hidden = interface.value("hidden", false) ? " (hidden)" : "";
  return columns_fitted(bytes, kSsidWidth - hidden.size()) + hidden;
}

static std::string state_of(const json& interface) {
  if (!interface.value("up", false)) return "down";
  return interface.value("beacons", false) ? "on" : "mute";
}

static std::vector<std::string> interface_row(const json& i) {
  bool on = i.value("beacons", false);
  return {i.value("name", std::string()),
          state_of(i),
          ssid_of(i),
          on ? std::to_string(i.value("channel", 0)) : "",
          columns_fitted(i.value("security", std::string()), kSecurityWidth),
          on ? std::to_string(i.value("stations", 0)) : ""};
}

static std::string duration(int64_t seconds) {
  if (seconds < 600) return std::to_string(seconds) + " s";
  if (seconds < 36000) return std::to_string(seconds / 60) + " min";
  return std::to_string(seconds / 3600) + " h";
}

static std::vector<std::string> station_row(const json& s) {
  std::string rssi;
  for (const json& chain : s["rssi"])
    rssi += (rssi.empty() ? "" : " ") + chain.dump();
  bool here = s.value("associated", false);
  return {s.value("mac", std::string()),
          here ? s.value("interface", std::string()) : "away",
          rssi,
          s.value("tx_rate", std::string()),
          here ? duration(s.value("connected", int64_t{0})) : "",
          s.value("btm", false) ? "yes" : "no"};
}

// "modules: a, b", wrapped at kColumnsWidth.
static std::string listed(const std::string& head, const std::vector<std::string>& words) {
  std::string text = head, line = head;
  if (words.empty()) return text + " none\n";
  for (size_t i = 0; i < words.size(); ++i) {
    std::string word = " " + words[i] + (i + 1 < words.size() ? "," : "");
    if (line.size() + word.size() > kColumnsWidth) {
      text += "\n ";
      line = " ";
    }
    text += word;
    line += word;
  }
  return text + "\n";
}

static std::string heading(const json& status) {
  char text[128];
  snprintf(text, sizeof text, "%s, scenario %s, %.0f s at speed %g%s\n",
           status.value("board", std::string()).c_str(),
           columns_fitted(status.value("scenario", std::string()), 30).c_str(),
           status.value("time", 0.0), status.value("speed", 1.0),
           status.value("paused", false) ? ", paused" : "");
  return text;
}

std::string status_tables(const std::string& text) {
  // The texts are UTF-8 whatever the caller's locale is; wcwidth has to know.
  setlocale(LC_CTYPE, "C.UTF-8");
  json status = json::parse(text, nullptr, false);
  if (!status.is_object()) return "";
  std::vector<std::vector<std::string>> interfaces, stations;
  for (const json& interface : status["interfaces"])
    interfaces.push_back(interface_row(interface));
  for (const json& station : status["stations"])
    stations.push_back(station_row(station));
  std::vector<std::string> modules, companions;
  for (const json& module : status["modules"])
    modules.push_back(module.get<std::string>());
  for (const json& companion : status["companions"])
    companions.push_back(companion.value("name", std::string()));
  std::string result = heading(status);
  if (!interfaces.empty()) result += "\n" + columns_table(kInterfaces, interfaces);
  if (!stations.empty()) result += "\n" + columns_table(kStations, stations);
  return result + "\n" + listed("modules:", modules) + listed("companions:", companions);
}

int status_print(const std::string& box, bool as_json) {
  std::string answer;
  if (int status = control_ask(box, {"status"}, answer); status != 0) return status;
  fputs((as_json ? answer : status_tables(answer)).c_str(), stdout);
  return 0;
}
