#include "model.h"

#include <gtest/gtest.h>
#include <cstring>

#include <nlohmann/json.hpp>

uint16_t answer::u16(size_t at) const {
  uint16_t word;
  memcpy(&word, bytes.substr(at, sizeof word).c_str(), sizeof word);
  return word;
}

uint32_t answer::u32(size_t at) const {
  uint32_t word;
  memcpy(&word, bytes.substr(at, sizeof word).c_str(), sizeof word);
  return word;
}

std::string model_profile(int band) {
  std::string text = "#The word of \"Default\" must not be removed\nDefault\n";
  text += band == 0
              ? "SSID1=Low\nSSID2=Low guest\nSSID3=Low third\nChannel=6\nWirelessMode=9\n"
              : "SSID1=High\nSSID2=High guest\nSSID3=High third\nChannel=36\nWirelessMode=14\n";
  return text +
         "AuthMode=WPA2PSK;OPEN;WPA2PSK\nEncrypType=AES;NONE;AES\nHideSSID=0;0;1\n"
         "RadioOn=1\nHT_BW=1\nVHT_BW=1\nHT_TxStream=2\nHT_GI=1\nVHT_SGI=1\n"
         "AccessPolicy0=0\nAccessControlList0=\nChannelUtilizationEnable=0\nWNMEnable=0\n";
}

static std::string without_delay(const std::string& scenario_text) {
  nlohmann::ordered_json document = nlohmann::ordered_json::parse(scenario_text);
  for (const char* radio : {"ra0", "ra8"}) {
    if (!document["radios"][radio].contains("bring_up_ms")) {
      document["radios"][radio]["bring_up_ms"] = 0;
    }
  }
  return document.dump();
}

void start_model(driver_state& state, const std::string& scenario_text, const char* board) {
  scenario around;
  std::string wrong;
  ASSERT_TRUE(scenario_parse(without_delay(scenario_text), "test", around, wrong)) << wrong;
  driver_init(state, *board_find(board), around);
  for (int n : {0, 1, 2, 8, 9, 10})
    driver_interface_up(state, n, model_profile(n < 8 ? 0 : 1), 0);
}

static answer ask(driver_state& state, int n, uint32_t number, uint16_t flags,
                  const std::string& input, uint16_t length, int64_t now_us) {
  driver_request r = {};
  r.bss = n;
  r.request = number;
  r.flags = flags;
  r.length = length;
  r.input = input;
  r.now_us = now_us < 0 ? state.now_us : now_us;
  int status = driver_handle(state, r);
  EXPECT_LE(r.output.size(), length);
  EXPECT_TRUE(status == 0 || r.output.empty());
  return {status, r.output};
}

int set_key(driver_state& state, int n, const std::string& text, int64_t now_us) {
  return ask(state, n, kRequestSetText, 0, text, static_cast<uint16_t>(text.size() + 1), now_us)
      .status;
}

answer query(driver_state& state, int n, uint16_t sub, uint16_t length, int64_t now_us) {
  return ask(state, n, kRequestObject, sub, "", length, now_us);
}

answer stations(driver_state& state, int n, int64_t now_us) {
  return ask(state, n, kRequestStations, 0, "", 5123, now_us);
}

answer carry(driver_state& state, int n, uint16_t flags, const std::string& input, int64_t now_us) {
  return ask(state, n, kRequestObject, flags, input, static_cast<uint16_t>(input.size()), now_us);
}

std::string mac_bytes(const std::string& text) {
  mac_address mac = {};
  EXPECT_TRUE(mac_parse(text, mac)) << text;
  return std::string(mac.begin(), mac.end());
}

int place_of(driver_state& state, const std::string& mac) {
  for (const driver_station& station : state.stations) {
    if (mac_text(station.is.mac) == mac) return station.associated ? station.bss : -1;
  }
  return -1;
}
