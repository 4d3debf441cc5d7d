// Key=Value texts. Every text that is accepted is kept; those in the table have an effect as well.
#include <cerrno>
#include <cstdlib>

#include <algorithm>

#include "driver/parts.h"

struct text_context {
  driver_state& state;
  driver_request& request;
  driver_bss& bss;
  driver_radio& radio;
  int radio_number;
  const std::string& value;
};

static int set_ssid(text_context& c) {
  if (c.value.size() > kDriverSsidMax) return -EINVAL;
  c.bss.ssid = c.value;
  return 0;
}

static int set_auth(text_context& c) {
  c.bss.auth = c.value;
  return 0;
}

static int set_encryption(text_context& c) {
  c.bss.encryption = c.value;
  return 0;
}

static int set_hidden(text_context& c) {
  c.bss.hidden = c.value == "1";
  return 0;
}

static int set_policy(text_context& c) {
  int policy = atoi(c.value.c_str());
  if (policy < 0 || policy > 2) return -EINVAL;
  c.bss.acl.policy = policy;
  return 0;
}

// Calls ACT for each address of a ";"-separated list, or for none when one is malformed.
template <typename Act>
static int for_each_mac(const std::string& list, Act act) {
  std::vector<mac_address> macs;
  for (int i = 0; !driver_field(list, i).empty(); ++i) {
    mac_address mac;
    if (!mac_parse(driver_field(list, i), mac)) return -EINVAL;
    macs.push_back(mac);
  }
  if (macs.empty()) return -EINVAL;
  for (const mac_address& mac : macs)
    act(mac);
  return 0;
}

static int add_to_acl(text_context& c) {
  std::vector<mac_address>& list = c.bss.acl.list;
  return for_each_mac(c.value, [&](const mac_address& mac) {
    if (std::find(list.begin(), list.end(), mac) == list.end()) list.push_back(mac);
  });
}

static int take_from_acl(text_context& c) {
  return for_each_mac(c.value, [&](const mac_address& mac) { std::erase(c.bss.acl.list, mac); });
}

static int clear_acl(text_context& c) {
  c.bss.acl.list.clear();
  return 0;
}

static int start_survey(text_context& c) {
  c.radio.survey_us = c.state.now_us;
  return 0;
}

static int select_channel(text_context& c) {
  c.radio.channel = driver_best_channel(c.state, c.radio_number);
  driver_decode(c.request, "channel", std::to_string(c.radio.channel));
  return 0;
}

static int set_channel(text_context& c) {
  int channel = atoi(c.value.c_str());
  if (channel < 1 || channel > 196) return -EINVAL;
  c.radio.channel = channel;
  return 0;
}

static int set_radio_on(text_context& c) {
  c.radio.on = c.value != "0";
  return 0;
}

static int set_load_on(text_context& c) {
  c.radio.load_on = c.value != "0";
  return 0;
}

static int start_wps(text_context& c) {
  if (c.value != "0") driver_wps_start(c.state, c.request.bss);
  return 0;
}

static int stop_wps(text_context& c) {
  driver_wps_stop(c.state, c.radio_number);
  return 0;
}

// Disconnecting an unknown station is not an error.
static int disconnect(text_context& c) {
  mac_address mac;
  if (!mac_parse(c.value, mac)) return -EINVAL;
  driver_station* station = driver_find_station(c.state, mac);
  bool here = station && station->associated && driver_radio_of(station->bss) == c.radio_number;
  driver_decode(c.request, "station", here ? "leaves" : "is not here");
  if (here) driver_disconnect(c.state, *station);
  return 0;
}

// A self-test marks the EEPROM as calibrated; the dual-band chip keeps what it measured in files.
static int self_test(text_context& c, const char* file) {
  if (!c.radio.ate) return -EINVAL;
  int owner = driver_is_dual_band_chip(c.state) ? 0 : c.radio_number;
  c.state.radios[owner].eeprom[0x52 / 2] |= 0x0002;
  if (driver_is_dual_band_chip(c.state)) c.state.files.emplace_back(file, "calibration data\n");
  return 0;
}

static int do_ate(text_context& c) {
  if (c.value == "ATESTART") {
    c.radio.ate = true;
  } else if (c.value == "ATESTOP") {
    c.radio.ate = false;
  } else if (c.value == "RX2GSELFTEST") {
    return self_test(c, "/nvram/MT7615_CALDATA1.bin");
  } else if (c.value == "RX5GSELFTEST") {
    return self_test(c, "/nvram/MT7615_CALDATA2.bin");
  }
  return 0;
}

struct text_row {
  const char* key;
  bool may_stand_alone;  // without "=": an empty value
  int (*apply)(text_context&);
};

static constexpr text_row kTexts[] = {
    {"SSID", false, set_ssid},
    {"AuthMode", false, set_auth},
    {"EncrypType", false, set_encryption},
    {"HideSSID", false, set_hidden},
    {"AccessPolicy", false, set_policy},
    {"ACLAddEntry", false, add_to_acl},
    {"ACLDelEntry", false, take_from_acl},
    {"ACLClearAll", false, clear_acl},
    {"SiteSurvey", false, start_survey},
    {"AutoChannelSel", false, select_channel},
    {"Channel", false, set_channel},
    {"RadioOn", false, set_radio_on},
    {"ApEnableRadioChStats", false, set_load_on},
    {"WscGetConf", false, start_wps},
    {"WscStop", true, stop_wps},
    {"DisConnectSta", false, disconnect},
    {"ATE", false, do_ate},
};

static const text_row* find_text(const std::string& key) {
  for (const text_row& row : kTexts) {
    if (key == row.key) return &row;
  }
  return nullptr;
}

int driver_do_text(driver_state& state, driver_request& r) {
  if (r.length > kDriverTextMax) return -E2BIG;
  std::string text(r.input.c_str());  // ends at the terminator, which some callers leave out
  size_t equals = text.find('=');
  std::string key = text.substr(0, equals);
  const text_row* row = find_text(key);
  bool stands_alone = row && row->may_stand_alone && equals == std::string::npos;
  if (!stands_alone && (equals == std::string::npos || equals == 0)) return -EINVAL;
  std::string value = stands_alone ? "" : text.substr(equals + 1);
  int radio = driver_radio_of(r.bss);
  text_context c = {state, r, state.bss[r.bss], state.radios[radio], radio, value};
  int status = row ? row->apply(c) : 0;
  if (status != 0) return status;
  c.bss.settings[key] = value;
  if (row) driver_settle(state);
  return 0;
}
