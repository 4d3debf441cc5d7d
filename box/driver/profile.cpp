// Interfaces going up and down, and what they read from their band's profile.
#include <cstdlib>

#include "base/profile_text.h"
#include "driver/parts.h"

using profile = std::map<std::string, std::string>;

static std::string value_of(const profile& p, const std::string& key) {
  auto at = p.find(key);
  return at == p.end() ? "" : at->second;
}

static driver_acl acl_of(const profile& p, int index) {
  driver_acl acl = {};
  acl.policy = atoi(value_of(p, "AccessPolicy" + std::to_string(index)).c_str());
  std::string list = value_of(p, "AccessControlList" + std::to_string(index));
  for (int i = 0; !driver_field(list, i).empty(); ++i) {
    mac_address mac;
    if (mac_parse(driver_field(list, i), mac)) acl.list.push_back(mac);
  }
  return acl;
}

static void take_bss(driver_bss& bss, const profile& p, int index) {
  bss.ssid = value_of(p, "SSID" + std::to_string(index + 1));
  bss.ssid_lost = bss.ssid.size() > kDriverSsidMax ? bss.ssid.size() - kDriverSsidMax : 0;
  bss.ssid.resize(bss.ssid.size() - bss.ssid_lost);
  bss.auth = driver_field(value_of(p, "AuthMode"), index);
  bss.encryption = driver_field(value_of(p, "EncrypType"), index);
  bss.hidden = driver_field(value_of(p, "HideSSID"), index) == "1";
  bss.acl = acl_of(p, index);
}

static void take_radio(driver_state& state, int number, const profile& p) {
  driver_radio& radio = state.radios[number];
  radio.profile = p;
  radio.ready_us = state.now_us + state.around.radios[number].bring_up_ms * 1000LL;
  radio.on = value_of(p, "RadioOn") != "0";
  int channel = atoi(value_of(p, "Channel").c_str());
  if (state.around.radios[number].channel != 0) channel = state.around.radios[number].channel;
  radio.channel = channel > 0 ? channel : driver_best_channel(state, number);
  radio.load_on = value_of(p, "ChannelUtilizationEnable") == "1";
  radio.btm_on = driver_field(value_of(p, "WNMEnable"), 0) == "1";
}

void driver_interface_up(driver_state& state, int n, const std::string& text, int64_t now_us) {
  driver_advance(state, now_us);
  if (state.bss[n].up) return;
  profile p = profile_text_read(text);
  int radio = driver_radio_of(n);
  if (n == driver_first_of(radio)) take_radio(state, radio, p);
  take_bss(state.bss[n], p, n - driver_first_of(radio));
  state.bss[n].up = true;
  driver_settle(state);
}

void driver_interface_down(driver_state& state, int n, int64_t now_us) {
  driver_advance(state, now_us);
  state.bss[n].up = false;
  int radio = driver_radio_of(n);
  if (n == driver_first_of(radio)) {
    driver_wps_stop(state, radio);
    state.radios[radio].survey_us = -1;
  }
  driver_settle(state);
}
