// Access control and steering in the driver model.
#include <gtest/gtest.h>
#include <cerrno>

#include "model.h"

static constexpr const char* kTwoStations = R"({"stations": [
  {"mac": "02:00:5e:00:00:01", "bss": 1, "others": [10], "btm": true, "returns_after": 5},
  {"mac": "02:00:5e:00:00:02", "bss": 1}]})";

// Address, padding, kind, action, seconds.
static std::string steer_record(const char* mac, uint8_t kind, uint8_t action, uint8_t seconds) {
  std::string record = mac_bytes(mac);
  record.resize(20, '\0');
  record[8] = static_cast<char>(kind);
  record[12] = static_cast<char>(action);
  record[16] = static_cast<char>(seconds);
  return record;
}

static std::string action_frame(const char* mac, const std::string& body) {
  std::string frame("\x0a\0\0\0", 4);
  frame += mac_bytes(mac) + body;
  frame.resize(1034, '\0');
  return frame;
}

TEST(Steer, BlacklistedStationsStayOutForTheirTime) {
  driver_state state;
  start_model(state, kTwoStations);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kOther, 0, 2, 30), kSecond).status, 0);
  EXPECT_EQ(place_of(state, kOther), -1);
  EXPECT_EQ(stations(state, 0, 31 * kSecond - 1).u32(0), 1u);
  EXPECT_EQ(stations(state, 0, 31 * kSecond).u32(0), 2u);
  EXPECT_TRUE(state.blacklist.empty());
}

TEST(Steer, BlacklistedForGoodUntilTakenOff) {
  driver_state state;
  start_model(state, kTwoStations);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kFirst, 0, 1, 0)).status, 0);
  EXPECT_EQ(place_of(state, kFirst), 9);  // moves to the other radio, as its scenario allows
  EXPECT_EQ(stations(state, 0, 100000 * kSecond).u32(0), 1u);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kFirst, 0, 0, 0)).status, 0);
  EXPECT_EQ(place_of(state, kFirst), 0);
}

TEST(Steer, RecordsThatAreWrong) {
  driver_state state;
  start_model(state, kTwoStations);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kFirst, 0, 3, 0)).status, -EINVAL);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kFirst, 2, 0, 0)).status, -EINVAL);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kFirst, 0, 1, 0).substr(0, 19)).status, -EMSGSIZE);
  EXPECT_EQ(carry(state, 0, 0x86B1, steer_record(kFirst, 1, 0, 0)).status, 0);
  EXPECT_EQ(place_of(state, kFirst), 0);
  EXPECT_TRUE(state.blacklist.empty());
}

TEST(Steer, ATransitionRequestMovesWhoKnowsIt) {
  driver_state state;
  start_model(state, kTwoStations);
  EXPECT_EQ(carry(state, 0, 0x86B0, action_frame(kFirst, "\x0a\x1b"), kSecond).status, 0);
  EXPECT_EQ(place_of(state, kFirst), 9);
  EXPECT_EQ(carry(state, 0, 0x86B0, action_frame(kOther, "x")).status, 0);
  EXPECT_EQ(place_of(state, kOther), 0);  // does not support such requests
  ASSERT_EQ(state.action_frames.size(), 2u);
  EXPECT_EQ(state.action_frames[0].category, 10u);
  EXPECT_EQ(state.action_frames[0].body, "\x0a\x1b");
  EXPECT_EQ(stations(state, 8, 60 * kSecond).u32(4 + 16), 59u);  // and stays there
  EXPECT_EQ(carry(state, 0, 0x86B0, action_frame(kFirst, "x").substr(0, 1033)).status, -EMSGSIZE);
}

TEST(Steer, DisconnectedStationsComeBackWhenTheScenarioSays) {
  driver_state state;
  start_model(state, kTwoStations);
  EXPECT_EQ(set_key(state, 0, std::string("DisConnectSta=") + kFirst), 0);
  EXPECT_EQ(set_key(state, 0, std::string("DisConnectSta=") + kOther), 0);
  EXPECT_EQ(set_key(state, 8, "DisConnectSta=02:00:5e:00:00:77"), 0);
  EXPECT_EQ(set_key(state, 8, "DisConnectSta=everybody"), -EINVAL);
  EXPECT_EQ(place_of(state, kFirst), -1);
  EXPECT_EQ(stations(state, 0, 4 * kSecond).u32(0), 0u);
  EXPECT_EQ(stations(state, 0, 5 * kSecond).u32(0), 1u);
  EXPECT_EQ(stations(state, 0, 100000 * kSecond).u32(0), 1u);
}

TEST(Steer, AccessListsLetInOrKeepOut) {
  driver_state state;
  start_model(state, kTwoStations);
  EXPECT_EQ(set_key(state, 0, std::string("ACLAddEntry=") + kOther), 0);
  EXPECT_EQ(stations(state, 0).u32(0), 2u);  // no policy yet
  EXPECT_EQ(set_key(state, 0, "AccessPolicy=2"), 0);
  EXPECT_EQ(place_of(state, kOther), -1);
  EXPECT_EQ(place_of(state, kFirst), 0);
  EXPECT_EQ(set_key(state, 0, "AccessPolicy=1"), 0);
  EXPECT_EQ(place_of(state, kOther), 0);
  EXPECT_EQ(place_of(state, kFirst), 9);
  EXPECT_EQ(set_key(state, 0, std::string("ACLDelEntry=") + kOther), 0);
  EXPECT_EQ(place_of(state, kOther), -1);
  EXPECT_EQ(set_key(state, 0, std::string("ACLAddEntry=") + kFirst + ";" + kOther), 0);
  EXPECT_EQ(stations(state, 0).u32(0), 2u);
  EXPECT_EQ(set_key(state, 0, "ACLClearAll=1"), 0);
  EXPECT_EQ(stations(state, 0).u32(0), 0u);
}

TEST(Steer, CapabilityOfOneStation) {
  driver_state state;
  start_model(state, kTwoStations);
  std::string record = std::string("\4\0", 2) + mac_bytes(kFirst) + '\0';  // nine bytes announced
  answer first = carry(state, 0, 0x494A, record);
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(first.u8(0), 4);
  EXPECT_EQ(first.u8(1), 1);
  EXPECT_EQ(first.bytes.size(), 9u);
  record.replace(2, 6, mac_bytes(kOther));
  EXPECT_EQ(carry(state, 0, 0x494A, record).u8(1), 0);
  record.replace(2, 6, mac_bytes("02:00:5e:00:00:77"));
  EXPECT_EQ(carry(state, 0, 0x494A, record).status, -ENOENT);
  record[0] = 5;
  EXPECT_EQ(carry(state, 0, 0x494A, record).status, -EINVAL);
  EXPECT_EQ(driver_input_size(kRequestObject, 0x494A, 9), 9u);
  EXPECT_EQ(driver_input_size(kRequestObject, 0x494A, 1), 0u);
}
