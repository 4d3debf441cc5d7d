// `gwbox status`, `gwbox set` and the current scenario, in a box.
#include <gtest/gtest.h>
#include <cerrno>

#include "inside.h"

using nlohmann::json;

static json interface_of(const json& status, const std::string& name) {
  for (const json& interface : status["interfaces"]) {
    if (interface["name"] == name) return interface;
  }
  return json::object();
}

static json station_of(const json& status, const std::string& mac) {
  for (const json& station : status["stations"]) {
    if (station["mac"] == mac) return station;
  }
  return json::object();
}

TEST(Status, ANewSsidIsBeaconedAfterARestartOfTheInterface) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  json first = interface_of(status_now(), "ra0");
  EXPECT_EQ(first["beacons"], true);
  EXPECT_EQ(first["ssid"], "HomeGateway");
  EXPECT_EQ(first["security"], "WPA2PSK/AES");
  EXPECT_EQ(interface_of(status_now(), "ra8")["beacons"], false);
  ASSERT_EQ(run("sed -i 's/^SSID1=.*/SSID1=Fresh paint/' /tmp/mt76xx_24.dat").status, 0);
  EXPECT_EQ(interface_of(status_now(), "ra0")["ssid"], "HomeGateway");
  ASSERT_EQ(run("ip link set ra0 down && ip link set ra0 up").status, 0);
  EXPECT_EQ(interface_of(status_now(), "ra0")["ssid"], "Fresh paint");
}

TEST(Status, StationsAreThoseOfTheScenario) {
  ASSERT_EQ(run("ip link set ra0 up && ip link set ra8 up").status, 0);
  json status = status_now();
  EXPECT_EQ(status["scenario"], "minimal");
  EXPECT_EQ(status["board"], "mt7603+mt7612");
  EXPECT_EQ(station_of(status, "02:00:5e:00:00:01")["interface"], "ra0");
  EXPECT_EQ(station_of(status, "02:00:5e:00:00:02")["interface"], "ra8");
  EXPECT_EQ(interface_of(status, "ra8")["stations"], 1);
  ASSERT_EQ(run("iwpriv ra8 set DisConnectSta=02:00:5e:00:00:02").status, 0);
  EXPECT_EQ(station_of(status_now(), "02:00:5e:00:00:02")["associated"], false);
}

TEST(Status, TablesFitEightyColumns) {
  ASSERT_EQ(run("ip link set ra0 up && ip link set ra8 up").status, 0);
  ASSERT_EQ(set_text("ra0", "SSID=\x1b[31m very long name of a net"), 0);
  run_result shown = run("gwbox status");
  EXPECT_EQ(shown.status, 0);
  for (const char* word : {"NAME", "ra15", "\\x1b[31m very long", "02:00:5e:00:00:01", "modules:"})
    EXPECT_NE(shown.output.find(word), std::string::npos) << word << shown.output;
  size_t start = 0;
  for (size_t end; (end = shown.output.find('\n', start)) != std::string::npos; start = end + 1)
    EXPECT_LE(end - start, 80u) << shown.output.substr(start, end - start);
}

// The name in ra0's line of `gwbox status`, printed in that language.
static std::string shown_ssid(const std::string& ssid, const char* language = "C.UTF-8") {
  EXPECT_EQ(set_text("ra0", "SSID=" + ssid), 0);
  run_result shown =
      run(std::string("LC_ALL=") + language + " gwbox status | grep '^ra0' | cut -b 12-");
  size_t end = shown.output.find("  6 WPA2PSK/AES");
  EXPECT_NE(end, std::string::npos) << shown.output;
  std::string name = shown.output.substr(0, end);
  while (name.ends_with(' '))
    name.pop_back();
  return name;
}

TEST(Status, NamesAreShownAsTheClientShowsThem) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  for (const char* language : {"C.UTF-8", "C"}) {
    EXPECT_EQ(shown_ssid("Caf\xc3\xa9\xe2\x98\x95", language), "Caf\xc3\xa9\xe2\x98\x95");
    EXPECT_EQ(shown_ssid("\xff\x01 odd", language), "\\xff\\x01 odd");
    EXPECT_EQ(shown_ssid("back\\slash", language), "back\\\\slash");
  }
  json first = interface_of(status_now(), "ra0");
  EXPECT_EQ(first["ssid"], "back\\slash");
  EXPECT_FALSE(first.contains("ssid_hex"));
  ASSERT_EQ(set_text("ra0", "SSID=\xff\x01"), 0);
  EXPECT_EQ(interface_of(status_now(), "ra0")["ssid_hex"], "ff01");
}

// Ten characters of three bytes and two columns each, then eight and nine bytes that are
// shown in four columns each.
TEST(Status, NamesAreCutBetweenCharacters) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  std::string name;
  for (int i = 0; i < 10; ++i)
    name += "\xe6\x97\xa5";
  EXPECT_EQ(shown_ssid(name), name);
  EXPECT_EQ(shown_ssid("\xff\xff\xff\xff\xff\xff\xff\xff"),
            "\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xff");
  EXPECT_EQ(shown_ssid("\xff\xff\xff\xff\xff\xff\xff\xff\xff"),
            "\\xff\\xff\\xff\\xff\\xff\\xff\\xff~");
}

TEST(Status, OfALongSsidABeaconHas32Bytes) {
  const std::string longest = "12345678901234567890123456789012";
  ASSERT_EQ(run("sed -i 's/^SSID1=.*/SSID1=" + longest + "345/' /tmp/mt76xx_24.dat").status, 0);
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  EXPECT_EQ(interface_of(status_now(), "ra0")["ssid"], longest);
  json entry = journal_entries().back();
  EXPECT_EQ(entry["name"], "profile");
  EXPECT_EQ(entry["interface"], "ra0");
  EXPECT_EQ(entry["ssid_bytes_lost"], "3");
  EXPECT_EQ(entry["text"], longest);
  EXPECT_EQ(set_text("ra0", "SSID=" + longest + "3"), EINVAL);
  EXPECT_EQ(set_text("ra0", "SSID=" + longest), 0);
}

TEST(Set, WhatIsWrongIsSaidByItsName) {
  const struct {
    const char* words;
    const char* said;
  } cases[] = {
      {"neighbour 02:00:5e:10:00:09 ssid=x channel=6",
       "neighbour 02:00:5e:10:00:09: \"radio\" is missing"},
      {"station nonsense bss=1",
       "station nonsense: mac: expected an address such as 02:00:5e:00:00:01"},
      {"station 02:00:5e:00:00:01 bss=17",
       "station 02:00:5e:00:00:01: bss: expected a whole number from 1 to 16"},
      {"bss 1 counters=[1]", "bss 1: counters: expected 14 numbers"},
      {"companion nosuch 3",
       "companions.nosuch: unknown, there are bndstrg_1, mtk_ctrl, radstat, hnc"},
      {"companion radstat.ra9 3", "companions.radstat.ra9: unknown, there are ra0, ra8"},
  };
  for (const auto& c : cases) {
    run_result wrong = run(std::string("gwbox set ") + c.words);
    EXPECT_EQ(wrong.status, 2) << c.words;
    EXPECT_EQ(wrong.output, std::string("gwbox: ") + c.said + "\n");
  }
}

TEST(Set, StationsAreSeenByTheDriversCallers) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  ASSERT_EQ(run("gwbox set station 02:00:5e:00:00:77 bss=1 'rssi=[-44,-45,-46]'").status, 0);
  unsigned char table[5124] = {};
  request_frame frame = make_frame("ra0", table, 5123, 0);
  ASSERT_EQ(request(0x8BEF, frame), 0);
  EXPECT_EQ(table[0], 2);
  EXPECT_EQ(table[44 + 6], 0x77);
  EXPECT_EQ(static_cast<signed char>(table[44 + 12]), -46);
  ASSERT_EQ(run("gwbox set station 02:00:5e:00:00:77 gone").status, 0);
  ASSERT_EQ(request(0x8BEF, frame), 0);
  EXPECT_EQ(table[0], 1);
}

TEST(Set, TheScenarioInForceIsInItsFile) {
  auto in_force = [] {
    return json::parse(run("cat /run/gwbox/scenario.json").output, nullptr, false);
  };
  EXPECT_EQ(in_force()["name"], "minimal");
  ASSERT_EQ(run("gwbox set companion bndstrg_1.marker_after 3").status, 0);
  ASSERT_EQ(run("gwbox set radio ra8 channel=44").status, 0);
  ASSERT_EQ(run("gwbox set companion radstat.ra0.rssi '[-71, -72]'").status, 0);
  EXPECT_EQ(in_force()["companions"]["bndstrg_1"]["marker_after"], 3);
  EXPECT_EQ(in_force()["companions"]["radstat"]["ra0"]["rssi"], json::parse("[-71,-72]"));
  EXPECT_EQ(in_force()["radios"]["ra8"]["channel"], 44);
  run_result wrong = run("gwbox set radio ra8 channel=many");
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.output, "gwbox: radios.ra8.channel: expected a whole number from 0 to 196\n");
  EXPECT_EQ(in_force()["radios"]["ra8"]["channel"], 44);
}

TEST(ScenarioCommand, ListsShowsAndChecks) {
  ASSERT_EQ(run("gwbox scenario check minimal").status, 0);
  EXPECT_NE(run("gwbox scenario list").output.find("apartment"), std::string::npos);
  EXPECT_EQ(run("gwbox scenario show nothing").status, 2);
  EXPECT_NE(run("gwbox scenario show schema").output.find("\"$defs\""), std::string::npos);
}
