// The box's side of `gwbox status`.
#include "control/status.h"

#include <dirent.h>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include <nlohmann/json.hpp>

#include "base/files.h"
#include "client/base/text.h"
#include "driver/parts.h"
#include "host/interfaces.h"

using json = nlohmann::ordered_json;

struct companion_name {
  const char* name;
  bool numbered;
};
static constexpr companion_name kCompanions[] = {
#define COMPANION(directory, name, run) {name, false},
#define NUMBERED_COMPANION(directory, name, run) {name, true},
#include "base/companions.def"
};

static json texts_of(const std::vector<mac_address>& macs) {
  json list = json::array();
  for (const mac_address& mac : macs)
    list.push_back(mac_text(mac));
  return list;
}

static int64_t seconds(int64_t us) {
  return us / 1000000;
}

// Adds the bytes in hexadecimal if they are not UTF-8, which JSON requires.
static void put_ssid(json& object, const std::string& ssid) {
  object["ssid"] = ssid;
  if (!text_is_utf8(ssid)) object["ssid_hex"] = text_hex(ssid);
}

static json interface_of(const driver_state& state, int n) {
  const driver_bss& bss = state.bss[n];
  bool beacons = driver_beacons(state, n);
  int stations = 0;
  for (const driver_station& station : state.stations)
    stations += station.associated && station.bss == n;
  json object = {{"name", "ra" + std::to_string(n)}, {"up", bss.up}, {"beacons", beacons}};
  put_ssid(object, beacons ? bss.ssid : "");
  object["channel"] = beacons ? state.radios[driver_radio_of(n)].channel : 0;
  object["security"] = beacons ? bss.auth + "/" + bss.encryption : "";
  object["hidden"] = beacons && bss.hidden;
  object["stations"] = stations;
  object["access"] = {{"policy", bss.acl.policy}, {"list", texts_of(bss.acl.list)}};
  object["settings"] = bss.settings;
  return object;
}

static json station_of(const driver_state& state, const driver_station& station) {
  json object = {{"mac", mac_text(station.is.mac)}};
  object["associated"] = station.associated;
  object["interface"] = station.associated ? "ra" + std::to_string(station.bss) : "";
  object["rssi"] = station.is.rssi;
  object["tx_rate"] = station.is.tx_rate;
  object["rx_rate"] = station.is.rx_rate;
  object["connected"] = station.associated ? seconds(state.now_us - station.since_us) : 0;
  bool away = !station.associated && station.returns_us > state.now_us;
  bool comes_back = away && station.returns_us != kDriverNever;
  object["returns_in"] =
      comes_back ? json(static_cast<double>(station.returns_us - state.now_us) / 1e6) : nullptr;
  object["btm"] = station.is.btm;
  object["rx_bytes"] = static_cast<uint64_t>(station.traffic.rx_bytes);
  object["tx_bytes"] = static_cast<uint64_t>(station.traffic.tx_bytes);
  return object;
}

static json blacklist_of(const driver_state& state) {
  json list = json::array();
  for (const driver_blacklisted& entry : state.blacklist) {
    json object = {{"mac", mac_text(entry.mac)}, {"radio", entry.radio == 0 ? "ra0" : "ra8"}};
    object["seconds_left"] = entry.until_us == kDriverNever
                                 ? json(nullptr)
                                 : json(seconds(entry.until_us - state.now_us));
    list.push_back(object);
  }
  return list;
}

static json action_frames_of(const driver_state& state) {
  json list = json::array();
  for (const driver_action_frame& frame : state.action_frames) {
    list.push_back({{"time", static_cast<double>(frame.time_us) / 1e6},
                    {"interface", "ra" + std::to_string(frame.bss)},
                    {"mac", mac_text(frame.mac)},
                    {"category", frame.category},
                    {"body", text_hex(frame.body)}});
  }
  return list;
}

static json radio_of(const driver_state& state, int number) {
  const driver_radio& radio = state.radios[number];
  return {{"on", radio.on},
          {"channel", radio.channel},
          {"channel_load", radio.load_on},
          {"btm", radio.btm_on},
          {"nonassoc", radio.nonassoc_on},
          {"watched", texts_of(radio.watched)},
          {"wps", {{"running", radio.wps.running}, {"status", radio.wps.status}}}};
}

static json modules_of(const trap_state& trap) {
  json list = json::array();
  for (const module_row* module : trap.modules.loaded)
    list.push_back(module->name);
  return list;
}

static bool is_companion(const std::string& name) {
  for (const companion_name& known : kCompanions) {
    if (name == known.name) return true;
    if (!known.numbered || !name.starts_with(known.name)) continue;
    if (name.find_first_not_of("0123456789", strlen(known.name)) == name.npos) return true;
  }
  return false;
}

static json companions_now() {
  json list = json::array();
  DIR* processes = opendir("/proc");
  if (!processes) return list;
  while (struct dirent* entry = readdir(processes)) {
    if (!isdigit(entry->d_name[0])) continue;
    std::string name = file_read(std::string("/proc/") + entry->d_name + "/comm");
    if (name.ends_with('\n')) name.pop_back();
    if (is_companion(name)) list.push_back({{"name", name}, {"pid", atoi(entry->d_name)}});
  }
  closedir(processes);
  return list;
}

std::string status_json(const trap_state& trap) {
  const driver_state& state = trap.driver;
  json object = {{"board", state.hardware->name}, {"scenario", state.around.name}};
  object["time"] = static_cast<double>(state.now_us) / 1e6;
  object["speed"] = state.clock.speed;
  object["paused"] = state.clock.paused;
  object["interfaces"] = json::array();
  for (int n = 0; n < kBoardMaxInterfaces; ++n) {
    std::string name = "ra" + std::to_string(n);
    if (net_interface_exists(trap.socket, name.c_str())) {
      object["interfaces"].push_back(interface_of(state, n));
    }
  }
  object["radios"] = {{"ra0", radio_of(state, 0)}, {"ra8", radio_of(state, 1)}};
  object["stations"] = json::array();
  for (const driver_station& station : state.stations)
    object["stations"].push_back(station_of(state, station));
  object["blacklist"] = blacklist_of(state);
  object["action_frames"] = action_frames_of(state);
  object["modules"] = modules_of(trap);
  object["companions"] = companions_now();
  return object.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}
