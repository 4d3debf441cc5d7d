// The effects of time in the driver model: stations come and go, counters grow, events
// happen.
#include <gtest/gtest.h>
#include <cerrno>

#include "model.h"

TEST(Time, StationsAppearAndLeave) {
  driver_state state;
  start_model(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 1, "appears": 10, "leaves": 20},
    {"mac": "02:00:5e:00:00:02", "bss": 2}]})");
  EXPECT_EQ(stations(state, 0, 9 * kSecond).u32(0), 1u);
  EXPECT_EQ(stations(state, 0, 10 * kSecond).u32(0), 2u);
  // The time since its arrival counts, even if nobody looked in between.
  answer table = stations(state, 0, 15 * kSecond);
  EXPECT_EQ(table.u32(4 + 16), 15u);  // has been there from the beginning
  EXPECT_EQ(table.u32(4 + 40 + 16), 5u);
  EXPECT_EQ(stations(state, 0, 20 * kSecond).u32(0), 1u);
  EXPECT_EQ(stations(state, 8, 20 * kSecond).u32(0), 0u);
}

TEST(Time, StationsGoWithTheirInterfaceAndComeBack) {
  driver_state state;
  start_model(state, R"({"stations": [
    {"mac": "02:00:5e:00:00:01", "bss": 2, "others": [9]},
    {"mac": "02:00:5e:00:00:02", "bss": 2}]})");
  driver_interface_down(state, 1, kSecond);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), 8);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:02"), -1);
  driver_interface_up(state, 1, model_profile(0), 3 * kSecond);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), 1);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:02"), 1);
  EXPECT_EQ(stations(state, 0, 5 * kSecond).u32(4 + 16), 2u);
}

TEST(Time, ARadioBeaconsWhenItHasComeUp) {
  driver_state state;
  start_model(state, R"({"radios": {"ra0": {"bring_up_ms": 1500}},
                         "stations": [{"mac": "02:00:5e:00:00:01", "bss": 2}]})");
  EXPECT_FALSE(driver_beacons(state, 0));
  EXPECT_TRUE(driver_beacons(state, 8));
  EXPECT_EQ(driver_next_us(state), kSecond * 3 / 2);
  EXPECT_EQ(stations(state, 0, kSecond).status, 0);  // the kernel says up, so it answers
  EXPECT_EQ(stations(state, 0).u32(0), 0u);
  driver_interface_up(state, 3, model_profile(0), kSecond);  // makes it no later
  EXPECT_EQ(stations(state, 0, kSecond * 3 / 2).u32(0), 1u);
  EXPECT_TRUE(driver_beacons(state, 3));
  // Another BSS of a radio that beacons needs no time.
  driver_interface_up(state, 4, model_profile(0), 2 * kSecond);
  EXPECT_TRUE(driver_beacons(state, 4));
  driver_interface_down(state, 0, 3 * kSecond);
  driver_interface_up(state, 0, model_profile(0), 3 * kSecond);
  EXPECT_FALSE(driver_beacons(state, 1));
  EXPECT_EQ(driver_next_us(state), kSecond * 9 / 2);
}

TEST(Time, ARadioComesUpInTheUsualTimeUnlessTheScenarioSays) {
  scenario around;
  std::string wrong;
  ASSERT_TRUE(scenario_parse("{}", "test", around, wrong));
  driver_state state;
  driver_init(state, *board_find("mt7603"), around);
  driver_interface_up(state, 0, model_profile(0), 0);
  EXPECT_EQ(driver_next_us(state), kScenarioBringUpMs * 1000);
  ASSERT_TRUE(scenario_load(kScenarioDefault, around));
  EXPECT_EQ(around.radios[0].bring_up_ms, 0);
  EXPECT_EQ(around.radios[1].bring_up_ms, 0);
}

TEST(Time, CountersGrowAtTheirRates) {
  driver_state state;
  start_model(state, R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1,
    "start": {"rx_bytes": 500, "tx_failures": 7},
    "per_second": {"rx_bytes": 100, "tx_bytes": 1000, "tx_packets": 10, "rx_packets": 4,
                   "tx_failures": 0.5}}],
    "bss": [{"bss": 1, "counters": [1,2,3,4,5,6,7,8,9,10,11,12,13,14],
             "per_second": [0,0,0,0,2,0,0,0,0,0,0,0,0,0]}]})");
  answer table = stations(state, 0, 10 * kSecond);
  EXPECT_EQ(table.u32(4 + 32), 100u);  // packets sent
  EXPECT_EQ(table.u32(4 + 36), 12u);   // failures: 7 + 5
  answer traffic = query(state, 0, 0x0695, 6659);
  EXPECT_EQ(traffic.u32(4 + 16), 1500u);
  EXPECT_EQ(traffic.u32(4 + 20), 10000u);
  answer counters = query(state, 0, 0x067D, 56);
  uint32_t expected[] = {101, 42, 1003, 10004, 25, 6, 7, 8, 9, 10, 11, 12, 13, 14};
  for (size_t i = 0; i < 14; ++i)
    EXPECT_EQ(counters.u32(4 * i), expected[i]) << i;
  EXPECT_EQ(query(state, 1, 0x067D, 56).u32(0), 0u);
  EXPECT_EQ(stations(state, 0, 20 * kSecond).u32(4 + 32), 200u);
}

TEST(Time, SsidCountersTellWhatIsNewSinceTheLastQuery) {
  driver_state state;
  start_model(state, R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 2,
    "per_second": {"rx_bytes": 30, "tx_bytes": 50}}],
    "bss": [{"bss": 3, "ssid_rx_bytes": 11, "ssid_tx_bytes": 22}]})");
  answer first = query(state, 0, 0x069A, 771, 2 * kSecond);
  EXPECT_EQ(first.u32(0), 3u);
  EXPECT_EQ(first.u32(4 + 96 + 8), 60u);
  EXPECT_EQ(first.u32(4 + 96 + 12), 100u);
  EXPECT_EQ(first.u32(4 + 192 + 8), 11u);
  EXPECT_EQ(first.u32(4 + 192 + 12), 22u);
  answer second = query(state, 0, 0x069A, 771, 3 * kSecond);
  EXPECT_EQ(second.u32(4 + 96 + 8), 30u);
  EXPECT_EQ(second.u32(4 + 192 + 8), 0u);
}

TEST(Time, CountersOf32BitsBeginAnew) {
  driver_state state;
  start_model(state, R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1,
    "start": {"rx_bytes": 4294967290}, "per_second": {"rx_bytes": 10}}]})");
  EXPECT_EQ(query(state, 0, 0x0695, 6659, kSecond).u32(4 + 16), 4u);
}

TEST(Time, EventsChangeTheScenario) {
  driver_state state;
  start_model(state, R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1}], "events": [
    {"at": 5, "set": "station 02:00:5e:00:00:01 rssi=[-80,-81]"},
    {"at": 6, "set": "station 02:00:5e:00:00:02 bss=9 appears=0"},
    {"at": 7, "set": "station 02:00:5e:00:00:01 gone"}]})");
  EXPECT_EQ(driver_next_us(state), 5 * kSecond);
  EXPECT_EQ(stations(state, 0, 4 * kSecond).s8(4 + 10), -55);
  EXPECT_FALSE(state.scenario_changed);
  EXPECT_EQ(stations(state, 0, 5 * kSecond).s8(4 + 10), -80);
  EXPECT_TRUE(state.scenario_changed);
  EXPECT_EQ(stations(state, 0).u32(4 + 16), 5u);  // has not left in between
  EXPECT_EQ(stations(state, 8, 9 * kSecond).u32(4 + 16), 3u);
  EXPECT_EQ(stations(state, 0).u32(0), 0u);
  EXPECT_EQ(driver_next_us(state), kDriverNever);
}

TEST(Time, MoreStationsThanTheTableHoldsStayOut) {
  std::string list;
  for (int i = 0; i < 130; ++i) {
    char entry[96];
    snprintf(entry, sizeof entry, "%s{\"mac\":\"02:00:5e:00:00:%02x\",\"bss\":%d}", i ? "," : "", i,
             1 + i % 3);
    list += entry;
  }
  driver_state state;
  start_model(state, "{\"stations\": [" + list + "]}");
  answer table = stations(state, 0);
  EXPECT_EQ(table.u32(0), 128u);
  EXPECT_EQ(table.bytes.size(), 5123u);
  EXPECT_EQ(table.u8(4 + 127 * 40 + 7), 128);  // association ids count from 1
}
