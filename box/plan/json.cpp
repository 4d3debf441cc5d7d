#include <nlohmann/json.hpp>

#include "plan/record.h"

using json = nlohmann::ordered_json;

static json settings_of(const plan& p) {
  json list = json::array();
  for (const plan_setting& setting : p.settings) {
    json entry = {{"file", setting.file}, {"key", setting.key}};
    if (setting.field >= 0) entry["field"] = setting.field;
    entry["before"] = setting.had ? json(setting.before) : json(nullptr);
    entry["after"] = setting.has ? json(setting.after) : json(nullptr);
    entry["secret"] = setting.secret;
    entry["in_effect"] = setting.is_pending ? "after a restart" : "now";
    entry["radio"] = setting.interface;
    list.push_back(entry);
  }
  return list;
}

static json outages_of(const plan& p) {
  json list = json::array();
  for (const plan_outage& outage : p.outages) {
    list.push_back({{"interface", outage.interface},
                    {"ssid", outage.ssid},
                    {"from", outage.from},
                    {"seconds", outage.seconds < 0 ? json(nullptr) : json(outage.seconds)}});
  }
  return list;
}

static json stations_of(const plan& p) {
  json list = json::array();
  for (const plan_station& station : p.stations) {
    bool back = !station.back_on.empty();
    list.push_back({{"mac", station.mac},
                    {"interface", station.interface},
                    {"why", station.why},
                    {"from", station.from},
                    {"back_on", back ? json(station.back_on) : json(nullptr)},
                    {"seconds", back ? json(station.seconds) : json(nullptr)}});
  }
  return list;
}

static json lines_of(const std::vector<plan_line>& lines) {
  json list = json::array();
  for (const plan_line& line : lines) {
    json entry = {{"what", line.text}, {"count", line.count}, {"failed", line.failed}};
    if (!line.call.empty()) entry["call"] = line.call;
    list.push_back(entry);
  }
  return list;
}

std::string plan_json(const plan& p) {
  json object = {{"about", plan_caveat(p)},
                 {"board", p.board},
                 {"scenario", p.scenario},
                 {"command", p.command},
                 {"status", p.status},
                 {"loses_air", plan_loses_air(p)},
                 {"settings", settings_of(p)},
                 {"off_air", outages_of(p)},
                 {"stations", stations_of(p)},
                 {"requests", lines_of(p.requests)},
                 {"commands", lines_of(p.commands)},
                 {"modules", lines_of(p.modules)},
                 {"companions", lines_of(p.companions)},
                 {"files", lines_of(p.files)},
                 {"messages", lines_of(p.messages)},
                 {"errors", p.output}};
  return object.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}
