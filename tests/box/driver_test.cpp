// The radios of the driver model: profile, texts, survey, load, capabilities.
#include <gtest/gtest.h>
#include <cerrno>

#include "model.h"

TEST(Radio, BeaconsWhatItsProfileSaidWhenItWentUp) {
  driver_state state;
  start_model(state, "{}");
  EXPECT_EQ(state.bss[0].ssid, "Low");
  EXPECT_EQ(state.bss[1].ssid, "Low guest");
  EXPECT_EQ(state.bss[9].auth, "OPEN");
  EXPECT_TRUE(state.bss[10].hidden);
  EXPECT_EQ(state.radios[0].channel, 6);
  driver_interface_up(state, 0, "SSID1=Ignored\n", 1);  // is up already
  EXPECT_EQ(state.bss[0].ssid, "Low");
  driver_interface_down(state, 0, 2);
  EXPECT_FALSE(driver_beacons(state, 0));
  EXPECT_FALSE(driver_beacons(state, 1));  // none beacons without the radio's first interface
  EXPECT_TRUE(driver_beacons(state, 8));
  driver_interface_up(state, 0, "SSID1=Renamed\nSSID1=Second\nChannel=11\n", 3);
  EXPECT_EQ(state.bss[0].ssid, "Renamed");
  EXPECT_EQ(state.radios[0].channel, 11);
}

TEST(Radio, LoadingTheModuleForgetsEverything) {
  driver_state state;
  start_model(state, "{}");
  EXPECT_EQ(set_key(state, 0, "LEDEnable=1"), 0);
  EXPECT_EQ(set_key(state, 8, "LEDEnable=1"), 0);
  driver_radio_loaded(state, 0, 5);
  EXPECT_FALSE(state.bss[0].up);
  EXPECT_TRUE(state.bss[0].settings.empty());
  EXPECT_EQ(state.bss[8].settings["LEDEnable"], "1");
}

TEST(Radio, HardwareIsAskedInVainWhileItIsDown) {
  driver_state state;
  start_model(state, "{}");
  driver_interface_down(state, 8, 0);
  for (uint16_t sub : {0x067D, 0x0693, 0x0695, 0x069A, 0x069B})
    EXPECT_EQ(query(state, 8, sub, 13163).status, -ENETDOWN) << sub;
  EXPECT_EQ(stations(state, 9).status, -ENETDOWN);
  EXPECT_EQ(set_key(state, 8, "SSID=accepted"), 0);
  EXPECT_EQ(query(state, 8, 0x06B2, 3).status, 0);
  EXPECT_EQ(query(state, 8, 0x0751, 4).status, 0);
}

TEST(Radio, TextsThatDoSomething) {
  driver_state state;
  start_model(state, "{}");
  EXPECT_EQ(set_key(state, 1, "SSID=By text"), 0);
  EXPECT_EQ(state.bss[1].ssid, "By text");
  EXPECT_EQ(set_key(state, 0, "Channel=9"), 0);
  EXPECT_EQ(state.radios[0].channel, 9);
  EXPECT_EQ(set_key(state, 0, "Channel=0"), -EINVAL);
  EXPECT_EQ(set_key(state, 0, "Channel=x"), -EINVAL);
  EXPECT_EQ(state.radios[0].channel, 9);
  EXPECT_EQ(set_key(state, 0, "RadioOn=0"), 0);
  EXPECT_FALSE(driver_beacons(state, 0));
  EXPECT_EQ(set_key(state, 0, "AccessPolicy=3"), -EINVAL);
  EXPECT_EQ(set_key(state, 0, "ACLAddEntry=02:00:5e:00:00"), -EINVAL);
  EXPECT_EQ(set_key(state, 0, "WscStop"), 0);
  EXPECT_EQ(set_key(state, 0, "BndStrgEnable=1"), 0);
  EXPECT_EQ(state.bss[0].settings["BndStrgEnable"], "1");
}

TEST(Radio, AutomaticSelectionTakesTheQuietestChannel) {
  driver_state state;
  start_model(state, R"({"neighbours": [
    {"bssid": "02:00:5e:10:00:01", "radio": "ra0", "channel": 3},
    {"bssid": "02:00:5e:10:00:02", "radio": "ra0", "channel": 11},
    {"bssid": "02:00:5e:10:00:03", "radio": "ra0", "channel": 9},
    {"bssid": "02:00:5e:10:00:04", "radio": "ra0", "channel": 4},
    {"bssid": "02:00:5e:10:00:05", "radio": "ra8", "channel": 36}]})");
  EXPECT_EQ(set_key(state, 0, "AutoChannelSel=3"), 0);
  EXPECT_EQ(state.radios[0].channel, 1);
  EXPECT_EQ(set_key(state, 8, "AutoChannelSel=3"), 0);
  EXPECT_EQ(state.radios[1].channel, 40);
}

TEST(Survey, TriesAgainForAWhileThenHasAllNeighbours) {
  std::string list;
  for (int i = 0; i < 70; ++i) {
    char entry[128];
    snprintf(entry, sizeof entry,
             "%s{\"bssid\":\"02:00:5e:10:00:%02x\",\"radio\":\"ra8\",\"channel\":44}", i ? "," : "",
             i);
    list += entry;
  }
  driver_state state;
  start_model(state, R"({"radios": {"ra8": {"survey_seconds": 5}}, "neighbours": [)" + list + "]}");
  EXPECT_EQ(query(state, 8, 0x069B, 13163).u32(0), 0u);  // no survey was requested
  EXPECT_EQ(set_key(state, 8, "SiteSurvey=1", 10 * kSecond), 0);
  EXPECT_EQ(query(state, 8, 0x069B, 13163, 10 * kSecond).status, -EAGAIN);
  EXPECT_EQ(query(state, 8, 0x069B, 13163, 15 * kSecond - 1).status, -EAGAIN);
  EXPECT_EQ(query(state, 0, 0x069B, 13163).status, 0);
  answer done = query(state, 8, 0x069B, 13163, 15 * kSecond);
  EXPECT_EQ(done.status, 0);
  EXPECT_EQ(done.u32(0), 70u);
  EXPECT_EQ(done.bytes.size(), 13163u);
  EXPECT_EQ(query(state, 8, 0x069B, 4 + 69 * 100).status, -EMSGSIZE);
  EXPECT_EQ(query(state, 8, 0x069B, 4 + 70 * 100).status, 0);
}

TEST(Load, FaultsUntilItsStatisticsAreOn) {
  driver_state state;
  start_model(state, R"({"radios": {"ra0": {"load_period": 2000, "load_busy": 600}}})");
  EXPECT_EQ(query(state, 0, 0x0693, 19).status, -EFAULT);
  EXPECT_EQ(set_key(state, 0, "ApEnableRadioChStats=1"), 0);
  answer load = query(state, 0, 0x0693, 19);
  EXPECT_EQ(load.status, 0);
  EXPECT_EQ(load.u32(0), 2000u);
  EXPECT_EQ(load.u16(16), 600);
  EXPECT_EQ(query(state, 8, 0x0693, 19).status, -EFAULT);
  EXPECT_EQ(set_key(state, 0, "ApEnableRadioChStats=0"), 0);
  EXPECT_EQ(query(state, 0, 0x0693, 20).status, -EFAULT);
}

TEST(Capability, AsTheScenarioHasIt) {
  driver_state state;
  start_model(state, R"({"radios": {"ra0": {"btm": false, "nonassoc": false}}})");
  EXPECT_EQ(query(state, 0, 0x494A, 1).status, -EOPNOTSUPP);
  EXPECT_EQ(carry(state, 0, 0x894A, std::string("\2\0\1", 3)).status, -EOPNOTSUPP);
  EXPECT_EQ(query(state, 0, 0x06B3, 3).status, -EOPNOTSUPP);
  EXPECT_EQ(carry(state, 0, 0x86B4, "\1").status, -EOPNOTSUPP);
  EXPECT_EQ(query(state, 8, 0x494A, 1).u8(0), 0);
  EXPECT_EQ(carry(state, 8, 0x894A, std::string("\2\0\1", 3)).status, 0);
  EXPECT_EQ(query(state, 8, 0x494A, 1).u8(0), 1);
  EXPECT_EQ(carry(state, 8, 0x894A, std::string("\2\0", 2)).status, -EMSGSIZE);
  EXPECT_EQ(query(state, 8, 0x06B3, 3).status, 0);
}

TEST(Eeprom, SelfTestMarksItAsCalibrated) {
  driver_state state;
  start_model(state, "{}", "mt7615");
  EXPECT_EQ(set_key(state, 0, "ATE=RX2GSELFTEST"), -EINVAL);  // ATE has not been started
  EXPECT_EQ(set_key(state, 8, "ATE=ATESTART"), 0);
  EXPECT_EQ(set_key(state, 8, "ATE=RXFRAME"), 0);
  EXPECT_EQ(state.radios[0].eeprom[0x52 / 2] & 2, 0);
  EXPECT_EQ(set_key(state, 8, "ATE=RX5GSELFTEST"), 0);
  EXPECT_EQ(state.radios[0].eeprom[0x52 / 2] & 2, 2);  // one EEPROM for both bands
  ASSERT_EQ(state.files.size(), 1u);
  EXPECT_EQ(state.files[0].first, "/nvram/MT7615_CALDATA2.bin");
  driver_radio_loaded(state, 0, 1);
  EXPECT_EQ(state.radios[0].eeprom[0x52 / 2] & 2, 2);  // survives the unloading of the driver
}
