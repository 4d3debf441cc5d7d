// Turns a checked document into plain records.
#include <cstdio>
#include <cstdlib>

#include "base/board.h"
#include "scenario/parts.h"

static const scenario_json& part(const scenario_json& object, const char* name) {
  static const scenario_json kNothing = scenario_json::object();
  auto found = object.find(name);
  return found == object.end() ? kNothing : *found;
}

static mac_address mac_of(const scenario_json& object, const char* name) {
  mac_address mac = {};
  static_cast<void>(mac_parse(object.value(name, std::string()), mac));  // guaranteed by the schema
  return mac;
}

static int radio_of(const scenario_json& object) {
  return object.value("radio", std::string()) == "ra8" ? 1 : 0;
}

static scenario_traffic read_traffic(const scenario_json& object) {
  return {object.value("rx_bytes", 0.0), object.value("tx_bytes", 0.0),
          object.value("rx_packets", 0.0), object.value("tx_packets", 0.0),
          object.value("tx_failures", 0.0)};
}

static scenario_station read_station(const scenario_json& object) {
  scenario_station station = {};
  station.mac = mac_of(object, "mac");
  station.bss = object.value("bss", 1) - 1;
  for (const scenario_json& other : part(object, "others"))
    station.others.push_back(other.get<int>() - 1);
  for (const scenario_json& rssi : part(object, "rssi"))
    station.rssi.push_back(rssi.get<int>());
  if (station.rssi.empty()) station.rssi = {-55, -57};
  const char* usual = station.bss < kBoardFirst5ghz ? "HT20 MCS15 SGI" : "VHT80 MCS9 NSS2 SGI";
  station.tx_rate = object.value("tx_rate", std::string(usual));
  station.rx_rate = object.value("rx_rate", station.tx_rate);
  station.btm = object.value("btm", false);
  station.asleep = object.value("asleep", false);
  station.by_wps = object.value("by_wps", false);
  station.appears = object.value("appears", 0.0);
  station.leaves = object.value("leaves", -1.0);
  station.returns_after = object.value("returns_after", -1.0);
  station.start = read_traffic(part(object, "start"));
  station.per_second = read_traffic(part(object, "per_second"));
  return station;
}

static scenario_neighbour read_neighbour(const scenario_json& object) {
  return {mac_of(object, "bssid"),
          radio_of(object),
          object.value("ssid", std::string()),
          object.value("channel", 1),
          object.value("rssi", -80),
          object.value("security", std::string("WPA2PSK/AES")),
          object.value("mode", std::string(radio_of(object) == 0 ? "11b/g/n" : "11a/n/ac"))};
}

static scenario_nonassoc read_nonassoc(const scenario_json& object) {
  scenario_nonassoc station = {
      mac_of(object, "mac"), radio_of(object), object.value("newest", -1), {}};
  for (const scenario_json& given : part(object, "observations")) {
    scenario_observation seen = {};
    seen.rssi = given.value("rssi", 0);
    int* d = seen.date;
    sscanf(given.value("time", std::string()).c_str(), "%d-%d-%d %d:%d:%d", d, d + 1, d + 2, d + 3,
           d + 4, d + 5);
    station.observations.push_back(seen);
  }
  return station;
}

static void read_counters(const scenario_json& list, double* counters) {
  for (size_t i = 0; i < list.size() && i < kScenarioBssCounters; ++i)
    counters[i] = list[i].get<double>();
}

static scenario_bss read_bss(const scenario_json& object) {
  scenario_bss bss = {};
  bss.bss = object.value("bss", 1) - 1;
  if (object.contains("counters")) read_counters(object["counters"], bss.counters);
  if (object.contains("per_second")) read_counters(object["per_second"], bss.per_second);
  bss.ssid_rx_bytes = object.value("ssid_rx_bytes", 0.0);
  bss.ssid_tx_bytes = object.value("ssid_tx_bytes", 0.0);
  return bss;
}

// How long a WPS session lasts if the scenario does not say: with an answer, and without one.
static constexpr double kWpsSeconds = 8;
static constexpr double kWpsTimeout = 120;

static scenario_wps read_wps(const scenario_json& object) {
  std::string outcome = object.value("outcome", std::string("success"));
  return {outcome == "failure"   ? kScenarioFailure
          : outcome == "timeout" ? kScenarioTimeout
                                 : kScenarioSuccess,
          object.value("seconds", kWpsSeconds), object.value("timeout", kWpsTimeout),
          object.value("pin", std::string())};
}

static scenario_radio read_radio(const scenario_json& object) {
  scenario_radio radio = {};
  radio.channel = object.value("channel", 0);
  radio.bring_up_ms = object.value("bring_up_ms", kScenarioBringUpMs);
  radio.btm = object.value("btm", true);
  radio.nonassoc = object.value("nonassoc", true);
  radio.survey_seconds = object.value("survey_seconds", 3.0);
  radio.load_period = object.value("load_period", 1000u);
  radio.load_busy = object.value("load_busy", 100u);
  radio.wps = read_wps(part(object, "wps"));
  for (const scenario_json& limit : part(object, "power"))
    radio.power.push_back({limit.value("channel", 1), limit.value("dbm", 0)});
  return radio;
}

void scenario_fill(const scenario_json& document, scenario& s) {
  s = {};
  s.name = document.value("name", std::string());
  s.board = document.value("board", std::string());
  s.speed = document.value("speed", 1.0);
  s.radios[0] = read_radio(part(part(document, "radios"), "ra0"));
  s.radios[1] = read_radio(part(part(document, "radios"), "ra8"));
  for (const scenario_json& given : part(document, "stations"))
    s.stations.push_back(read_station(given));
  for (const scenario_json& given : part(document, "neighbours"))
    s.neighbours.push_back(read_neighbour(given));
  for (const scenario_json& given : part(document, "nonassoc"))
    s.nonassoc.push_back(read_nonassoc(given));
  for (const scenario_json& given : part(document, "bss"))
    s.bss.push_back(read_bss(given));
  for (const scenario_json& given : part(document, "events"))
    s.events.push_back({given.value("at", 0.0), given.value("set", std::string()),
                        given.value("fail", std::string())});
  s.text = document.dump(2) + "\n";
}
