#include <libsmartcols.h>
#include <locale.h>

#include <algorithm>

#include "base/columns.h"
#include "client/base/text.h"
#include "plan/record.h"

static constexpr size_t kValueWidth = 20;

bool plan_loses_air(const plan& p) {
  return !p.outages.empty() || !p.stations.empty();
}

bool plan_did_nothing(const plan& p) {
  return p.settings.empty() && !plan_loses_air(p) && p.requests.empty() && p.commands.empty() &&
         p.modules.empty() && p.companions.empty() && p.files.empty() && p.messages.empty();
}

std::string plan_caveat(const plan& p) {
  return "The model of a gateway (" + p.board + ", scenario " + p.scenario +
         "), not a gateway. Really run: wificonfd, rpcbind, iwpriv and the other commands. "
         "Assumed: how long radios take to come up, and which stations come back, when and where.";
}

static std::string radio_number(const std::string& interface) {
  return interface == "ra0" ? "1" : "9";
}

static std::string shown(bool is_there, const std::string& value, bool secret) {
  if (!is_there) return "(none)";
  if (secret && !value.empty()) return "(secret)";
  return value.empty() ? "(empty)" : columns_fitted(value, kValueWidth);
}

static std::string name_of(const plan_setting& setting) {
  std::string field = setting.field < 0 ? "" : " field " + std::to_string(setting.field);
  return setting.key + field + (setting.interface == "ra0" ? "" : " (5 GHz)");
}

static std::string settings_table(const plan& p) {
  static constexpr column kColumns[] = {
      {"SETTING", 0, 0}, {"BEFORE", 0, 0}, {"AFTER", 0, 0}, {"IN EFFECT", 0, SCOLS_FL_WRAP}};
  std::vector<std::vector<std::string>> rows;
  for (const plan_setting& s : p.settings) {
    std::string when =
        s.is_pending ? "after a restart of radio " + radio_number(s.interface) : "now";
    rows.push_back({columns_fitted(name_of(s), kValueWidth + 4), shown(s.had, s.before, s.secret),
                    shown(s.has, s.after, s.secret), when});
  }
  return columns_table(kColumns, rows);
}

static std::string seconds_of(double seconds) {
  return text_format("%.3f s", seconds);
}

static std::string outages_table(const plan& p) {
  static constexpr column kColumns[] = {
      {"OFF AIR", 0, 0}, {"FOR", 0, SCOLS_FL_RIGHT}, {"THEN AS", 0, 0}};
  std::vector<std::vector<std::string>> rows;
  for (const plan_outage& o : p.outages) {
    bool back = o.seconds >= 0;
    rows.push_back({o.interface, back ? seconds_of(o.seconds) : "it stays off",
                    columns_fitted(o.ssid, kValueWidth)});
  }
  return columns_table(kColumns, rows);
}

static std::string stations_table(const plan& p) {
  static constexpr column kColumns[] = {{"THROWN OFF", 17, 0},
                                        {"FROM", 4, 0},
                                        {"WHY", 0, 0},
                                        {"BACK ON", 0, 0},
                                        {"AFTER", 0, SCOLS_FL_RIGHT}};
  std::vector<std::vector<std::string>> rows;
  for (const plan_station& s : p.stations) {
    bool back = !s.back_on.empty();
    rows.push_back({s.mac, s.interface, s.why, back ? s.back_on : "not within an hour",
                    back ? seconds_of(s.seconds) : ""});
  }
  return columns_table(kColumns, rows);
}

// "  3 x iwpriv ra0 set Channel=6  (wlan_set_channel)"
static std::string line_of(const plan_line& line) {
  std::string text = line.count > 1 ? std::to_string(line.count) + " x " : "";
  text += text_escape(line.text);
  if (line.failed) text += " FAILED";
  if (!line.call.empty()) text += "  (" + line.call + ")";
  return text_wrap("  " + text, kColumnsWidth, 0, 6) + "\n";
}

static std::string section(const char* heading, const std::vector<plan_line>& lines) {
  std::string text;
  for (const plan_line& line : lines)
    text += line_of(line);
  return lines.empty() ? "" : std::string("\n") + heading + "\n" + text;
}

static std::string command_of(const plan& p) {
  std::string text;
  for (const std::string& word : p.command)
    text += (text.empty() ? "" : " ") + text_escape(word);
  return text;
}

static std::string errors_of(const plan& p) {
  std::string text;
  for (const std::string& line : p.output)
    text += text_wrap("  " + text_escape(line), kColumnsWidth, 0, 4) + "\n";
  return text.empty() ? "" : "\nThe daemon's errors\n" + text;
}

std::string plan_text(const plan& p) {
  // The texts are UTF-8 whatever the caller's locale is; the table library has to know.
  setlocale(LC_CTYPE, "C.UTF-8");
  std::string text = text_wrap(plan_caveat(p), kColumnsWidth, 0, 0) + "\n\n";
  text += text_wrap("Command: " + command_of(p), kColumnsWidth, 0, 2) + "\n";
  if (p.status != 0) text += "It failed with status " + std::to_string(p.status) + ".\n";
  if (plan_did_nothing(p)) return text + "It did nothing at all.\n" + errors_of(p);
  text += p.settings.empty() ? "\nNo setting is stored.\n" : "\n" + settings_table(p);
  text += plan_loses_air(p) ? "" : "\nNobody loses air.\n";
  if (!p.outages.empty()) text += "\n" + outages_table(p);
  if (!p.stations.empty()) text += "\n" + stations_table(p);
  text += section("Driver requests", p.requests) + section("Commands", p.commands);
  text += section("Modules", p.modules) + section("Companions", p.companions);
  text += section("Files", p.files) + section("Messages to other daemons", p.messages);
  return text + errors_of(p);
}
