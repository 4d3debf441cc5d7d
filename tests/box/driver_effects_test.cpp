// What the driver model tells of BSSs and stations as effects.
#include <gtest/gtest.h>

#include "model.h"

using line_list = std::vector<std::string>;

// What changed since the last look, a line each: "ra0 begins Low", "ra0 joins 00:01 on air",
// "ra8 roams 00:01 from ra0 off air".
static line_list changes(driver_state& state) {
  line_list lines;
  for (const driver_effect& effect : state.effects) {
    std::string line = effect.interface;
    for (const auto& [name, value] : effect.members) {
      if (name == "from") line += " from";
      line += " " + (name == "mac" ? value.substr(12) : value);
    }
    lines.push_back(line);
  }
  state.effects.clear();
  return lines;
}

// The same of stations alone.
static line_list moves(driver_state& state) {
  std::erase_if(state.effects, [](const driver_effect& effect) {
    return std::string(effect.effect) != "station";
  });
  return changes(state);
}

static void start_quietly(driver_state& state, const std::string& scenario_text) {
  start_model(state, scenario_text);
  state.effects.clear();
}

static void edit(driver_state& state, const std::string& words) {
  scenario changed = state.around;
  std::string wrong;
  ASSERT_TRUE(scenario_edit_line(changed, words, wrong)) << wrong;
  driver_take_scenario(state, changed);
}

TEST(Effects, AnInterfaceThatGoesUpOrDownBeginsOrStopsToBeacon) {
  driver_state state;
  start_model(state, "{}");
  ASSERT_EQ(state.effects.size(), 6u);
  EXPECT_STREQ(state.effects[2].effect, "beacon");
  EXPECT_EQ(state.effects[2].interface, "ra2");
  EXPECT_EQ(state.effects[2].members, (driver_members{{"what", "begins"},
                                                      {"ssid", "Low third"},
                                                      {"hidden", "1"},
                                                      {"auth", "WPA2PSK"},
                                                      {"encryption", "AES"},
                                                      {"channel", "6"}}));
  EXPECT_EQ(changes(state)[4], "ra9 begins High guest 0 OPEN NONE 36");
  driver_interface_down(state, 1, kSecond);
  EXPECT_EQ(changes(state), line_list{"ra1 stops"});
  driver_interface_down(state, 0, kSecond);  // and the whole radio with it
  EXPECT_EQ(changes(state), (line_list{"ra0 stops", "ra2 stops"}));
  driver_interface_up(state, 0, model_profile(0), 2 * kSecond);
  EXPECT_EQ(changes(state),
            (line_list{"ra0 begins Low 0 WPA2PSK AES 6", "ra2 begins Low third 1 WPA2PSK AES 6"}));
  driver_radio_loaded(state, 8, 3 * kSecond);
  EXPECT_EQ(changes(state), (line_list{"ra8 stops", "ra9 stops", "ra10 stops"}));
}

TEST(Effects, TextsThatChangeWhatIsBeaconed) {
  driver_state state;
  start_quietly(state, "{}");
  struct {
    const char* text;
    line_list told;
  } rows[] = {
      {"SSID=Fresh", {"ra1 changes Fresh 0 OPEN NONE 6"}},
      {"SSID=Fresh", {}},
      {"AuthMode=WPA2PSK", {"ra1 changes Fresh 0 WPA2PSK NONE 6"}},
      {"EncrypType=AES", {"ra1 changes Fresh 0 WPA2PSK AES 6"}},
      {"HideSSID=1", {"ra1 changes Fresh 1 WPA2PSK AES 6"}},
      {"Channel=11",
       {"ra0 changes Low 0 WPA2PSK AES 11", "ra1 changes Fresh 1 WPA2PSK AES 11",
        "ra2 changes Low third 1 WPA2PSK AES 11"}},
      {"RadioOn=0", {"ra0 stops", "ra1 stops", "ra2 stops"}},
      {"SSID=Unseen", {}},
      {"RadioOn=1",
       {"ra0 begins Low 0 WPA2PSK AES 11", "ra1 begins Unseen 1 WPA2PSK AES 11",
        "ra2 begins Low third 1 WPA2PSK AES 11"}},
      {"LEDEnable=1", {}},
      {"AutoChannelSel=1",
       {"ra0 changes Low 0 WPA2PSK AES 1", "ra1 changes Unseen 1 WPA2PSK AES 1",
        "ra2 changes Low third 1 WPA2PSK AES 1"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(set_key(state, 1, row.text), 0) << row.text;
    EXPECT_EQ(changes(state), row.told) << row.text;
  }
  EXPECT_NE(set_key(state, 1, "Channel=0"), 0);
  EXPECT_NE(set_key(state, 1, "SSID=" + std::string(33, 'x')), 0);
  EXPECT_EQ(changes(state), line_list{});
}

TEST(Effects, AnSsidThatIsNotUtf8IsToldInHexadecimalToo) {
  driver_state state;
  start_quietly(state, "{}");
  EXPECT_EQ(set_key(state, 0, "SSID=\xff!"), 0);
  ASSERT_EQ(state.effects.size(), 1u);
  EXPECT_EQ(state.effects[0].members[1].second, "\xff!");
  EXPECT_EQ(state.effects[0].members[2], (std::pair<std::string, std::string>{"ssid_hex", "ff21"}));
}

TEST(Effects, AChannelOfTheScenario) {
  driver_state state;
  start_quietly(state, "{}");
  edit(state, "radio ra8 channel=44");
  line_list told = changes(state);
  ASSERT_EQ(told.size(), 3u);
  EXPECT_EQ(told[0], "ra8 changes High 0 WPA2PSK AES 44");
}

TEST(Effects, NothingIsToldWhereNothingChanges) {
  driver_state state;
  start_quietly(state, R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1}]})");
  for (int second = 1; second <= 100; ++second) {
    stations(state, 0, second * kSecond);
    query(state, 0, 0x067D, 56);
    EXPECT_EQ(set_key(state, 0, "SiteSurvey=1"), 0);
    EXPECT_EQ(set_key(state, 0, "LEDEnable=1"), 0);
    edit(state, "station 02:00:5e:00:00:01 rssi=[-60]");
  }
  EXPECT_EQ(changes(state), line_list{});
}

TEST(Effects, ARadioThatNeedsTimeToComeUp) {
  driver_state state;
  start_model(state, R"({"radios": {"ra0": {"bring_up_ms": 1500}},
                         "stations": [{"mac": "02:00:5e:00:00:01", "bss": 2}]})");
  EXPECT_EQ(changes(state)[0].substr(0, 10), "ra8 begins");  // at once, unlike the other radio
  driver_advance(state, kSecond * 3 / 2 - 1);
  EXPECT_EQ(changes(state), line_list{});
  driver_advance(state, kSecond * 3 / 2);
  EXPECT_EQ(changes(state),
            (line_list{"ra0 begins Low 0 WPA2PSK AES 6", "ra1 begins Low guest 0 OPEN NONE 6",
                       "ra2 begins Low third 1 WPA2PSK AES 6", "ra1 joins 00:01 on air"}));
}

TEST(Effects, StationsAppearAndAreSwitchedOff) {
  driver_state state;
  start_quietly(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 1, "appears": 10, "leaves": 20}]})");
  driver_advance(state, 10 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra0 joins 00:01 appeared"});
  driver_advance(state, 20 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra0 leaves 00:01 from ra0 switched off"});
}

TEST(Effects, StationsOfABssThatGoesOffTheAir) {
  driver_state state;
  start_model(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 2, "others": [9]},
    {"mac": "02:00:5e:00:00:02", "bss": 2, "returns_after": 10},
    {"mac": "02:00:5e:00:00:03", "bss": 2}]})");
  EXPECT_EQ(moves(state), (line_list{"ra1 joins 00:01 on air", "ra1 joins 00:02 on air",
                                     "ra1 joins 00:03 on air"}));
  driver_interface_down(state, 1, kSecond);
  EXPECT_EQ(changes(state),
            (line_list{"ra1 stops", "ra8 roams 00:01 from ra1 off air",
                       "ra1 leaves 00:02 from ra1 off air", "ra1 leaves 00:03 from ra1 off air"}));
  driver_interface_up(state, 1, model_profile(0), 3 * kSecond);
  EXPECT_EQ(moves(state), (line_list{"ra1 roams 00:01 from ra8 on air", "ra1 joins 00:03 on air"}));
  driver_advance(state, 11 * kSecond - 1);
  EXPECT_EQ(moves(state), line_list{});
  driver_advance(state, 11 * kSecond);  // ten seconds after it lost its BSS
  EXPECT_EQ(moves(state), line_list{"ra1 joins 00:02 returned"});
  // It does not come before its BSS, either.
  EXPECT_EQ(set_key(state, 0, "RadioOn=0", 20 * kSecond), 0);
  driver_advance(state, 40 * kSecond);
  changes(state);
  EXPECT_EQ(set_key(state, 0, "RadioOn=1"), 0);
  EXPECT_EQ(moves(state), (line_list{"ra1 roams 00:01 from ra8 on air", "ra1 joins 00:02 on air",
                                     "ra1 joins 00:03 on air"}));
}

TEST(Effects, DisconnectedStationsReturn) {
  driver_state state;
  start_quietly(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 1, "others": [9], "returns_after": 5},
    {"mac": "02:00:5e:00:00:02", "bss": 1, "returns_after": 0},
    {"mac": "02:00:5e:00:00:03", "bss": 1}]})");
  EXPECT_EQ(set_key(state, 0, std::string("DisConnectSta=") + kFirst, kSecond), 0);
  EXPECT_EQ(moves(state), line_list{"ra0 leaves 00:01 from ra0 disconnected"});
  EXPECT_EQ(set_key(state, 0, std::string("DisConnectSta=") + kOther), 0);
  EXPECT_EQ(moves(state),
            (line_list{"ra0 leaves 00:02 from ra0 disconnected", "ra0 joins 00:02 returned"}));
  EXPECT_EQ(set_key(state, 0, "DisConnectSta=02:00:5e:00:00:03"), 0);
  EXPECT_EQ(set_key(state, 0, "DisConnectSta=02:00:5e:00:00:03"), 0);  // is no longer here
  EXPECT_EQ(moves(state), line_list{"ra0 leaves 00:03 from ra0 disconnected"});
  driver_advance(state, 1000 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra0 joins 00:01 returned"});
}

TEST(Effects, AccessListsMoveStations) {
  driver_state state;
  start_quietly(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 1, "others": [9]},
    {"mac": "02:00:5e:00:00:02", "bss": 1}]})");
  EXPECT_EQ(set_key(state, 0, "AccessPolicy=1"), 0);
  EXPECT_EQ(moves(state), (line_list{"ra8 roams 00:01 from ra0 access list",
                                     "ra0 leaves 00:02 from ra0 access list"}));
  EXPECT_EQ(set_key(state, 0, std::string("ACLAddEntry=") + kFirst + ";" + kOther), 0);
  EXPECT_EQ(moves(state),
            (line_list{"ra0 roams 00:01 from ra8 access list", "ra0 joins 00:02 access list"}));
}

TEST(Effects, TheBlacklistMovesStations) {
  driver_state state;
  start_quietly(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 1, "others": [9]},
    {"mac": "02:00:5e:00:00:02", "bss": 1}]})");
  // Address, padding, kind, action (for a time), seconds.
  for (const char* mac : {kFirst, kOther}) {
    std::string record = mac_bytes(mac) + std::string("\0\0\0\0\0\0\2\0\0\0\36\0\0\0", 14);
    EXPECT_EQ(carry(state, 0, 0x86B1, record, kSecond).status, 0);
  }
  EXPECT_EQ(moves(state), (line_list{"ra8 roams 00:01 from ra0 blacklist",
                                     "ra0 leaves 00:02 from ra0 blacklist"}));
  driver_advance(state, 31 * kSecond);
  EXPECT_EQ(moves(state),
            (line_list{"ra0 roams 00:01 from ra8 blacklist", "ra0 joins 00:02 blacklist"}));
}

TEST(Effects, TransitionRequestsMoveStations) {
  driver_state state;
  start_quietly(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 1, "others": [10], "btm": true}]})");
  std::string frame = std::string("\x0a\0\0\0", 4) + mac_bytes(kFirst);
  frame.resize(1034, '\0');
  EXPECT_EQ(carry(state, 0, 0x86B0, frame).status, 0);
  EXPECT_EQ(moves(state), line_list{"ra9 roams 00:01 from ra0 transition"});
  // Where it was sent goes off the air and comes back.
  driver_interface_down(state, 9, kSecond);
  EXPECT_EQ(moves(state), line_list{"ra0 roams 00:01 from ra9 off air"});
  driver_interface_up(state, 9, model_profile(1), 2 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra9 roams 00:01 from ra0 on air"});
}

TEST(Effects, AWpsSessionLetsAStationIn) {
  driver_state state;
  start_quietly(state, R"({"radios": {"ra0": {"wps": {"seconds": 8}}},
    "stations": [{"mac": "02:00:5e:00:00:01", "bss": 1, "by_wps": true}]})");
  EXPECT_EQ(set_key(state, 0, "WscConfMode=7"), 0);
  EXPECT_EQ(set_key(state, 0, "WscMode=2"), 0);
  EXPECT_EQ(set_key(state, 0, "WscGetConf=1"), 0);
  driver_advance(state, 7 * kSecond);
  EXPECT_EQ(moves(state), line_list{});
  driver_advance(state, 8 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra0 joins 00:01 wps"});
}

TEST(Effects, TheScenarioMovesStations) {
  driver_state state;
  start_quietly(state, R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1}], "events": [
    {"at": 5, "set": "station 02:00:5e:00:00:02 bss=9"},
    {"at": 6, "set": "station 02:00:5e:00:00:01 bss=9"}]})");
  driver_advance(state, 5 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra8 joins 00:02 scenario"});
  driver_advance(state, 6 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra8 roams 00:01 from ra0 scenario"});
  edit(state, "station 02:00:5e:00:00:01 by_wps=true");
  EXPECT_EQ(moves(state), line_list{"ra8 leaves 00:01 from ra8 scenario"});
  edit(state, "station 02:00:5e:00:00:01 by_wps=false");
  EXPECT_EQ(moves(state), line_list{"ra8 joins 00:01 scenario"});
  edit(state, "station 02:00:5e:00:00:01 gone");
  EXPECT_EQ(moves(state), line_list{"ra8 leaves 00:01 from ra8 scenario"});
  edit(state, "station 02:00:5e:00:00:03 bss=4");  // whose interface is down
  EXPECT_EQ(moves(state), line_list{});
  driver_interface_up(state, 3, model_profile(0), 7 * kSecond);
  EXPECT_EQ(moves(state), line_list{"ra3 joins 00:03 on air"});
}

TEST(Effects, AStationJoinsWhenThereIsRoom) {
  std::string list;
  for (int i = 0; i < 129; ++i) {
    char entry[96];
    snprintf(entry, sizeof entry, "%s{\"mac\":\"02:00:5e:00:00:%02x\",\"bss\":1%s}", i ? "," : "",
             i, i == 7 ? ",\"leaves\":10" : "");
    list += entry;
  }
  driver_state state;
  start_quietly(state, "{\"stations\": [" + list + "]}");
  driver_advance(state, 10 * kSecond);
  EXPECT_EQ(moves(state),
            (line_list{"ra0 leaves 00:07 from ra0 switched off", "ra0 joins 00:80 room"}));
}
