// WPS sessions in the driver model, with every outcome.
#include <gtest/gtest.h>
#include <cerrno>

#include <set>

#include "model.h"

static uint32_t wps_state(driver_state& state, int n, int64_t now_us) {
  return query(state, n, 0x0AA0, 4, now_us).u32(0);
}

static uint32_t wps_status(driver_state& state, int n) {
  return query(state, n, 0x0751, 4).u32(0);
}

static void start_session(driver_state& state, int n, const char* mode, const char* pin) {
  EXPECT_EQ(set_key(state, n, std::string("WscPinCode=") + pin), 0);
  EXPECT_EQ(set_key(state, n, "WscConfMode=7"), 0);
  EXPECT_EQ(set_key(state, n, "WscConfStatus=2"), 0);
  EXPECT_EQ(set_key(state, n, std::string("WscMode=") + mode), 0);
  EXPECT_EQ(set_key(state, n, "WscGetConf=1"), 0);
}

static std::string plan(const char* outcome) {
  return std::string(R"({"radios": {"ra0": {"wps": {"outcome": ")") + outcome +
         R"(", "seconds": 10, "timeout": 120, "pin": "12345670"}}},
           "stations": [{"mac": "02:00:5e:00:00:01", "bss": 1, "by_wps": true}]})";
}

TEST(Wps, PushButtonSucceedsThroughItsStates) {
  driver_state state;
  start_model(state, plan("success"));
  EXPECT_EQ(wps_state(state, 0, 0), 0u);
  EXPECT_EQ(wps_status(state, 0), 0u);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), -1);
  start_session(state, 0, "2", "");
  std::set<uint32_t> seen;
  uint32_t before = 0;
  for (int64_t t = 0; t < 10 * kSecond; t += kSecond / 10) {
    uint32_t now = wps_state(state, 0, t);
    EXPECT_GE(now, before);
    EXPECT_LE(now, 27u);
    EXPECT_EQ(wps_status(state, 0), 1u);
    before = now;
    seen.insert(now);
  }
  EXPECT_GE(seen.size(), 8u);
  EXPECT_EQ(wps_state(state, 0, 10 * kSecond), 3u);
  EXPECT_EQ(wps_status(state, 0), 34u);
  EXPECT_EQ(wps_status(state, 2), 34u);  // every interface of the radio shows it
  EXPECT_EQ(wps_status(state, 8), 0u);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), 0);
}

TEST(Wps, FailureAsPlanned) {
  driver_state state;
  start_model(state, plan("failure"));
  start_session(state, 0, "2", "");
  EXPECT_EQ(wps_state(state, 0, 10 * kSecond), 3u);
  EXPECT_EQ(wps_status(state, 0), 2u);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), -1);
}

TEST(Wps, PinMustBeTheRightOne) {
  driver_state state;
  start_model(state, plan("success"));
  start_session(state, 0, "1", "00000000");
  EXPECT_EQ(wps_state(state, 0, 10 * kSecond), 3u);
  EXPECT_EQ(wps_status(state, 0), 2u);
  start_session(state, 0, "1", "12345670");
  EXPECT_EQ(wps_status(state, 0), 1u);
  EXPECT_EQ(wps_state(state, 0, 20 * kSecond), 3u);
  EXPECT_EQ(wps_status(state, 0), 34u);
}

TEST(Wps, NobodyAnswersUntilItTimesOut) {
  driver_state state;
  start_model(state, plan("timeout"));
  start_session(state, 0, "2", "");
  EXPECT_EQ(wps_state(state, 0, 119 * kSecond), 7u);  // still waiting for the session to begin
  EXPECT_EQ(wps_status(state, 0), 1u);
  EXPECT_EQ(wps_state(state, 0, 120 * kSecond), 0u);
  EXPECT_EQ(wps_status(state, 0), 2u);
}

TEST(Wps, OverdueSessionEndsNext) {
  for (const char* when : {"at once", "while it runs"}) {
    driver_state state;
    start_model(state, plan("success"));
    scenario shorter = state.around;
    std::string wrong;
    ASSERT_TRUE(scenario_edit_line(shorter, "radio ra0 wps.seconds=0", wrong)) << wrong;
    if (std::string(when) == "at once") driver_take_scenario(state, shorter);
    start_session(state, 0, "2", "");
    EXPECT_EQ(wps_state(state, 0, kSecond) == 3, std::string(when) == "at once");
    driver_take_scenario(state, shorter);
    EXPECT_EQ(wps_state(state, 0, 2 * kSecond), 3u) << when;
    EXPECT_EQ(wps_status(state, 0), 34u) << when;
    EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), 0) << when;
  }
}

TEST(Wps, CancelEndsTheSession) {
  driver_state state;
  start_model(state, plan("success"));
  start_session(state, 0, "2", "");
  EXPECT_NE(wps_state(state, 0, 5 * kSecond), 0u);
  EXPECT_EQ(set_key(state, 0, "WscStop"), 0);
  EXPECT_EQ(wps_state(state, 0, 5 * kSecond), 0u);
  EXPECT_EQ(wps_state(state, 0, 20 * kSecond), 0u);
  EXPECT_EQ(wps_status(state, 0), 0u);
  EXPECT_EQ(place_of(state, "02:00:5e:00:00:01"), -1);
}

TEST(Wps, NothingStartsWhileItIsSwitchedOff) {
  driver_state state;
  start_model(state, plan("success"));
  EXPECT_EQ(set_key(state, 0, "WscConfMode=0"), 0);
  EXPECT_EQ(set_key(state, 0, "WscGetConf=1"), 0);
  EXPECT_EQ(wps_status(state, 0), 0u);
}

TEST(Wps, CodesAreWholeNumbers) {
  driver_state state;
  start_model(state, plan("success"));
  for (uint16_t sub : {0x0AA0, 0x0751}) {
    EXPECT_EQ(query(state, 0, sub, 3).status, -EMSGSIZE);
    EXPECT_EQ(query(state, 0, sub, 4).status, 0);
  }
}
