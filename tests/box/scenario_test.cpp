// Scenarios: those supplied are good, mistakes are reported with their lines, and edits.
#include "scenario/document.h"

#include <gtest/gtest.h>

static std::string wrong_with(const std::string& text) {
  scenario s;
  std::string wrong;
  EXPECT_FALSE(scenario_parse(text, "x.json", s, wrong)) << text;
  return wrong;
}

TEST(Scenario, TheOnesThatShip) {
  for (const char* name : {"minimal", "apartment", "mesh"}) {
    scenario s;
    std::string wrong;
    EXPECT_TRUE(scenario_parse(std::string(scenario_shipped(name)), name, s, wrong)) << wrong;
    EXPECT_EQ(s.name, name);
    // The document kept in a scenario is valid and means the same.
    scenario again;
    EXPECT_TRUE(scenario_parse(s.text, "again", again, wrong)) << wrong;
    EXPECT_EQ(again.text, s.text);
  }
  scenario apartment;
  ASSERT_TRUE(scenario_load("apartment", apartment));
  EXPECT_GE(apartment.stations.size(), 24u);
  size_t low = 0;
  for (const scenario_neighbour& neighbour : apartment.neighbours)
    low += neighbour.radio == 0;
  EXPECT_GT(low, 64u);
  EXPECT_TRUE(scenario_shipped("none").empty());
}

TEST(Scenario, ErrorsPointAtTheLine) {
  std::string head = "{\n\"stations\": [\n{\"mac\": \"02:00:5e:00:00:01\", \"bss\": 1},\n";
  EXPECT_EQ(wrong_with(head + "{\"mac\": \"02:00:5e:00:00:02\", \"bss\": 1,\n\"rssi\": [1,\n2]}]}"),
            "x.json:5: stations[1].rssi: expected 1 to 4 numbers, each a number from -127 to 0");
  EXPECT_EQ(wrong_with(head + "{\"mac\": \"02:00:5e:00:00:02\", \"bss\": 1,\n\"rssi\": []}]}"),
            "x.json:5: stations[1].rssi: expected 1 to 4 numbers");
  EXPECT_EQ(wrong_with(head + "{\"mac\": \"02:00:5e:00:00\", \"bss\": 1}]}"),
            "x.json:4: stations[1].mac: expected an address such as 02:00:5e:00:00:01");
  EXPECT_EQ(wrong_with(head + "{\"bss\": 1}]}"), "x.json:4: stations[1]: \"mac\" is missing");
  EXPECT_EQ(wrong_with(head + "{\"mac\": \"02:00:5E:00:00:01\", \"bss\": 1}]}"),
            "x.json:4: stations[1].mac: 02:00:5e:00:00:01 appears twice");
}

TEST(Scenario, ErrorsSayWhatWasExpected) {
  EXPECT_EQ(wrong_with("[]"), "x.json:1: expected an object");
  EXPECT_TRUE(wrong_with("{\n\"colour\": 1}").starts_with("x.json:2: colour: unknown, there are "));
  EXPECT_EQ(wrong_with("{\"board\": \"mt9999\"}"),
            "x.json:1: board: expected \"mt7603\", \"mt7603+mt7612\" or \"mt7615\"");
  EXPECT_EQ(wrong_with("{\"speed\": -1}"), "x.json:1: speed: expected a number from 0 to 100000");
  EXPECT_EQ(wrong_with("{\"radios\": {\n\"ra0\": {\"wps\":\n{\"outcome\": \"maybe\"}}}}"),
            "x.json:3: radios.ra0.wps.outcome: expected \"success\", \"failure\" or \"timeout\"");
  EXPECT_EQ(wrong_with("{\"stations\": [{\"mac\": \"02:00:5e:00:00:01\", \"bss\": 2.5}]}"),
            "x.json:1: stations[0].bss: expected a whole number from 1 to 16");
  EXPECT_NE(wrong_with("{\"stations\": [{\"mac\": \"02:00:5e:00:00:01\", \"bss\": 2,\n"
                       "\"tx_rate\": \"HT80 MCS3\"}]}")
                .find("x.json:2: stations[0].tx_rate: expected a rate such as"),
            std::string::npos);
}

TEST(Scenario, TextsThatAreNoJson) {
  EXPECT_TRUE(wrong_with("{\n\"speed\": 1,\n}").starts_with("x.json:3: syntax error"));
  EXPECT_TRUE(wrong_with("").starts_with("x.json:1: syntax error"));
  EXPECT_TRUE(wrong_with("{\"speed\": 1").starts_with("x.json:1: syntax error"));
}

TEST(Scenario, LinesAreFoundBehindWhateverComesBefore) {
  EXPECT_TRUE(wrong_with("{\"companions\": {\"hnc\": {\"hne\": [\"]\\\"}\", {\"b\": [[],{}]}],\n "
                         "\"settings\": null}},\n"
                         "\"name\": \"x\\\\\", \"speed\":\n true}")
                  .starts_with("x.json:4: speed: expected"));
}

TEST(Scenario, EventsMustBeWordsThatCanBeSet) {
  EXPECT_EQ(
      wrong_with("{\"events\": [\n{\"at\": 1, \"set\": \"station 02:00:5e:00:00:01 bss=40\"}]}"),
      "x.json:2: events[0].set: stations[0].bss: expected a whole number from 1 to 16");
  EXPECT_TRUE(
      wrong_with("{\"events\": [\n{\"at\": 1, \"set\": \"dance\"}]}")
          .starts_with("x.json:2: events[0].set: 'dance' cannot be set: expected station,"));
}

// Events count in the order of their times, not of the document.
TEST(Scenario, EventsFindWhatEarlierOnesHaveMade) {
  scenario s;
  std::string wrong;
  const std::string made = R"({"at": 5, "set": "station 02:00:5e:00:00:07 bss=1"})";
  const std::string gone = R"({"at": 9, "set": "station 02:00:5e:00:00:07 gone"})";
  EXPECT_TRUE(scenario_parse("{\"events\": [" + gone + "," + made + "]}", "x", s, wrong)) << wrong;
  EXPECT_EQ(wrong_with("{\"events\": [\n" + gone + "]}"),
            "x.json:2: events[0].set: there is no station 02:00:5e:00:00:07");
}

TEST(Scenario, EventsThatFail) {
  scenario s;
  std::string wrong;
  ASSERT_TRUE(scenario_parse(R"({"events": [{"at": 1, "fail": "survey@ra0 EAGAIN 5"},
                                            {"at": 2, "fail": "clear"}]})",
                             "x", s, wrong))
      << wrong;
  EXPECT_EQ(s.events[0].fail, "survey@ra0 EAGAIN 5");
  EXPECT_EQ(s.events[1].set, "");
  auto fail = [](const std::string& words) {
    return wrong_with("{\"events\": [{\"at\": 1, \"fail\": \"" + words + "\"}]}");
  };
  EXPECT_EQ(fail("survey EIO 0"),
            "x.json:1: events[0].fail: '0' is not a valid count: expected a whole number from 1 to "
            "1000000000");
  EXPECT_TRUE(
      fail("weather EIO").starts_with("x.json:1: events[0].fail: \"weather\" is not a request"));
  EXPECT_EQ(fail("survey"),
            "x.json:1: events[0].fail: 'survey' needs HOW: an errno name such as EAGAIN, delay=MS, "
            "short=BYTES or count=NUMBER");
  auto set = [](const std::string& change) {
    return wrong_with(R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1, "rssi": [-50]}],
      "events": [{"at": 1, "set": "station 02:00:5e:00:00:01 )" +
                      change + "\"}]}");
  };
  EXPECT_EQ(set("rssi.1=-40"), "x.json:2: events[0].set: there is no element \"1\" in a list of 1");
  EXPECT_EQ(set("bss.first=2"), "x.json:2: events[0].set: \"bss\" has no member \"first\"");
  EXPECT_EQ(wrong_with(R"({"events": [{"at": 1}]})"),
            "x.json:1: events[0]: expected either \"set\" or \"fail\"");
  EXPECT_EQ(wrong_with(R"({"events": [{"at": 1, "set": "speed 1", "fail": "clear"}]})"),
            "x.json:1: events[0]: expected either \"set\" or \"fail\"");
}

TEST(Scenario, EveryMistakeIsToldInTheOrderOfTheLines) {
  EXPECT_EQ(wrong_with("{\n\"stations\": [\n{\"mac\": \"02:00:5e:00:00:01\", \"bss\": 99},\n"
                       "{\"bss\": 1, \"btm\": 1},\n{\"mac\": \"02:00:5e:00:00:01\", \"bss\": 1}],\n"
                       "\"speed\": -1}"),
            "x.json:3: stations[0].bss: expected a whole number from 1 to 16\n"
            "x.json:4: stations[1]: \"mac\" is missing\n"
            "x.json:4: stations[1].btm: expected true or false\n"
            "x.json:5: stations[2].mac: 02:00:5e:00:00:01 appears twice\n"
            "x.json:6: speed: expected a number from 0 to 100000");
  EXPECT_EQ(wrong_with(
                "{\"events\": [\n{\"at\": 1, \"fail\": \"x\"},\n{\"at\": 1, \"set\": \"speed\"}]}"),
            "x.json:2: events[0].fail: 'x' needs HOW: an errno name such as EAGAIN, delay=MS, "
            "short=BYTES or count=NUMBER\n"
            "x.json:3: events[1].set: expected more after \"speed\"");
}

TEST(Scenario, Edits) {
  scenario s;
  std::string wrong;
  ASSERT_TRUE(scenario_parse("{}", "x", s, wrong));
  auto edit = [&](const char* line) { return scenario_edit_line(s, line, wrong); };
  EXPECT_TRUE(edit("station 02:00:5e:00:00:01 bss=9 rssi=[-60,-61] per_second.tx_bytes=5"));
  ASSERT_EQ(s.stations.size(), 1u);
  EXPECT_EQ(s.stations[0].bss, 8);
  EXPECT_EQ(s.stations[0].per_second.tx_bytes, 5);
  EXPECT_TRUE(edit("station 02:00:5E:00:00:01 bss=2 tx_rate=\"HT20 MCS3 SGI\""));
  ASSERT_EQ(s.stations.size(), 1u);
  EXPECT_EQ(s.stations[0].tx_rate, "HT20 MCS3 SGI");
  EXPECT_TRUE(edit("neighbour 02:00:5e:10:00:01 radio=ra8 channel=36 ssid=123"));
  EXPECT_EQ(s.neighbours[0].ssid, "123");
  EXPECT_TRUE(edit("bss 3 counters=[1,2,3,4,5,6,7,8,9,10,11,12,13,14]"));
  EXPECT_EQ(s.bss[0].bss, 2);
  EXPECT_TRUE(edit("radio ra8 wps.outcome=timeout channel=44"));
  EXPECT_EQ(s.radios[1].wps.outcome, kScenarioTimeout);
  EXPECT_EQ(s.radios[1].channel, 44);
  EXPECT_TRUE(edit("companion hnc.hne.0 '{\"a\":[1,2]}'"));
  EXPECT_TRUE(edit("companion hnc.hne.0.a.1 gone"));
  EXPECT_NE(s.text.find("\"hnc\""), std::string::npos);
  EXPECT_TRUE(edit("station 02:00:5e:00:00:01 gone"));
  EXPECT_TRUE(s.stations.empty());
  EXPECT_TRUE(edit("speed 2.5"));
  EXPECT_EQ(s.speed, 2.5);
}

TEST(Scenario, EditsThatAreWrongChangeNothing) {
  scenario s;
  std::string wrong;
  ASSERT_TRUE(scenario_load("minimal", s));
  std::string before = s.text;
  for (const char* line :
       {"", "station", "station 02:00:5e:00:00:01", "station 02:00:5e:00:00:01 bss",
        "station 02:00:5e:00:00:01 bss=17", "station 02:00:5e:00:00:01 colour=red",
        "station zz bss=1", "station 02:00:5e:00:00:99 gone", "radio ra1 channel=3",
        "radio ra0 channel=x", "companion a", "neighbour 02:00:5e:10:00:09 channel=3",
        "station 02:00:5e:00:00:01 rssi.7=1", "station 02:00:5e:00:00:01 bss.deeper=1", "speed",
        "speed fast", "speed 1 2", "weather fine"}) {
    EXPECT_FALSE(scenario_edit_line(s, line, wrong)) << line;
    EXPECT_NE(wrong, "") << line;
    EXPECT_EQ(s.text, before) << line;
  }
}
