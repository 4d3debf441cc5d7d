// What is on the air, and what changed there, told as data.
#include "client/base/text.h"
#include "driver/parts.h"

bool driver_beacons(const driver_state& state, int n) {
  int radio = driver_radio_of(n);
  return state.bss[n].up && driver_radio_up(state, radio) && state.radios[radio].on &&
         state.radios[radio].ready_us <= state.now_us;
}

static std::string interface_name(int n) {
  return "ra" + std::to_string(n);
}

static driver_members setting_of(const driver_state& state, int n) {
  if (!driver_beacons(state, n)) return {};
  const driver_bss& bss = state.bss[n];
  driver_members setting = {{"ssid", bss.ssid}};
  if (!text_is_utf8(bss.ssid)) setting.emplace_back("ssid_hex", text_hex(bss.ssid));
  setting.emplace_back("hidden", bss.hidden ? "1" : "0");
  setting.emplace_back("auth", bss.auth);
  setting.emplace_back("encryption", bss.encryption);
  setting.emplace_back("channel", std::to_string(state.radios[driver_radio_of(n)].channel));
  return setting;
}

void driver_tell_beacons(driver_state& state) {
  for (int n = 0; n < kBoardMaxInterfaces; ++n) {
    driver_members setting = setting_of(state, n);
    if (setting == state.beacons[n]) continue;
    const char* what = setting.empty() ? "stops" : state.beacons[n].empty() ? "begins" : "changes";
    driver_members members = {{"what", what}};
    members.insert(members.end(), setting.begin(), setting.end());
    state.effects.push_back({"beacon", interface_name(n), members, state.now_us});
    state.beacons[n] = setting;
  }
}

void driver_tell_station(driver_state& state, const driver_station& station, const char* what,
                         int from, const char* why) {
  driver_members members = {{"what", what}, {"mac", mac_text(station.is.mac)}};
  if (from >= 0) members.emplace_back("from", interface_name(from));
  members.emplace_back("why", why);
  state.effects.push_back({"station", interface_name(station.bss), members, state.now_us});
}
