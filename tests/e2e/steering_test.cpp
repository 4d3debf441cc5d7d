#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

// Steering seen from outside, in a gateway whose time runs twenty times as fast.

static constexpr uint32_t kSetSteerMac = 264;
static constexpr uint32_t kSetSteerType = 266;
static constexpr uint32_t kGetSteerType = 267;
static constexpr uint32_t kSetBlacklistAction = 268;
static constexpr uint32_t kSetBlacklistTimer = 270;
static constexpr uint32_t kSetFrameMac = 282;
static constexpr uint32_t kSetFramePayload = 284;

static constexpr uint32_t kBlacklist = 0;
static constexpr uint32_t kTransition = 1;
static constexpr uint32_t kDisconnect = 3;

// The first is on ra0, supports transition requests and may move to ra8. The second can
// only be on ra8 and stays away for 30 s after a disconnection.
static const std::string kRoamer = "02:00:5e:00:00:01";
static const std::string kHomebody = "02:00:5e:00:00:02";

static void bring_up() {
  // Takes longer than other tests: the load and the init each wait for a second.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
}

static int32_t set_text(uint32_t procedure, uint32_t index, const std::string& text) {
  return call_for_code(procedure, xdr_word(index) + xdr_text(text));
}

static int32_t set_number(uint32_t procedure, uint32_t index, uint32_t value) {
  return call_for_code(procedure, xdr_word(index) + xdr_word(value));
}

static std::string status(const std::string& filter) {
  std::string text = run("gwbox status --json | jq -r '" + filter + "'");
  while (!text.empty() && text.back() == '\n')
    text.pop_back();
  return text;
}

// The interface that a station is on; empty when it is on none.
static std::string place_of(const std::string& station) {
  return status(".stations[] | select(.mac == \"" + station + "\") | .interface");
}

static double box_time() {
  return std::stod(status(".time"));
}

// When a connected station connected.
static double arrival_of(const std::string& station) {
  return std::stod(
      status(".stations[] as $s | select($s.mac == \"" + station + "\") | .time - $s.connected"));
}

// The records that reached the driver, one per line: interface, object and bytes.
static std::string records() {
  return run(
      "jq -r 'select(.name == \"object_set\") | .interface + \" \" + .sub + \" \" + .bytes' "
      "/run/gwbox/journal.jsonl");
}

TEST(Steering, TransitionRequestMovesAStationThatKnowsIt) {
  bring_up();
  ASSERT_EQ(place_of(kRoamer), "ra0");
  ASSERT_EQ(place_of(kHomebody), "ra8");
  EXPECT_EQ(set_text(kSetFrameMac, 1, kRoamer), 0);
  EXPECT_EQ(set_text(kSetFramePayload, 1, "0701aBzZ"), 0);
  EXPECT_EQ(set_number(kSetSteerType, 1, kTransition), 0);
  EXPECT_EQ(place_of(kRoamer), "ra8");
  EXPECT_EQ(status(".action_frames[] | .interface + \" \" + .mac + \" \" + .body"),
            "ra0 " + kRoamer + " 0701ab");
  EXPECT_EQ(records(), "ra0 0x06B0 0a00000002005e0000010701ab" + std::string(2 * 1021, '0') +
                           "\nra0 0x06B1 02005e00000100000100000000000000"
                           "00000000\n");
  // The other station stays where it is.
  EXPECT_EQ(set_text(kSetFrameMac, 9, kHomebody), 0);
  EXPECT_EQ(set_text(kSetFramePayload, 9, ""), 0);
  EXPECT_EQ(set_number(kSetSteerType, 9, kTransition), 0);
  EXPECT_EQ(place_of(kHomebody), "ra8");
  reply_message reply = {};
  ASSERT_TRUE(call(kGetSteerType, xdr_word(9), &reply));
  // A getter that finds its key returns code 1.
  EXPECT_EQ(reply.payload.substr(0, 12), xdr_word(1) + xdr_word(4) + xdr_word(1));
}

TEST(Steering, DisconnectedStationLeavesAndComesBackByItself) {
  bring_up();
  EXPECT_EQ(set_text(kSetSteerMac, 9, kHomebody), 0);
  const double before = box_time();
  EXPECT_EQ(set_number(kSetSteerType, 9, kDisconnect), 0);
  EXPECT_EQ(place_of(kHomebody), "");
  EXPECT_NE(run("gwbox status | grep '" + kHomebody + "  *away'"), "");
  EXPECT_EQ(run("jq -r 'select(.text) | select(.text | startswith(\"DisC\")) | .interface + \" \" "
                "+ .text' /run/gwbox/journal.jsonl"),
            "ra8 DisConnectSta=" + kHomebody + "\n");
  EXPECT_TRUE(wait_until([] { return place_of(kHomebody) == "ra8"; }));
  EXPECT_GE(arrival_of(kHomebody), before + 30 - 1);
}

TEST(Steering, BlacklistedStationIsRefusedUntilItsTimeHasPassed) {
  bring_up();
  EXPECT_EQ(set_text(kSetSteerMac, 9, kHomebody), 0);
  EXPECT_EQ(set_number(kSetBlacklistAction, 9, 2), 0);
  EXPECT_EQ(set_number(kSetBlacklistTimer, 9, 30), 0);
  const double before = box_time();
  EXPECT_EQ(set_number(kSetSteerType, 9, kBlacklist), 0);
  EXPECT_EQ(place_of(kHomebody), "");
  EXPECT_EQ(status(".blacklist[] | .mac + \" \" + .radio"), kHomebody + " ra8");
  EXPECT_EQ(records(),
            "ra8 0x06B1 02005e00000200000000000002000000"
            "1e000000\n");
  EXPECT_TRUE(wait_until([] { return place_of(kHomebody) == "ra8"; }));
  EXPECT_GE(arrival_of(kHomebody), before + 30 - 1);
  EXPECT_EQ(status(".blacklist[]"), "");
}

TEST(Steering, BlacklistForGoodAndOffItAgain) {
  bring_up();
  EXPECT_EQ(set_text(kSetSteerMac, 9, kHomebody), 0);
  EXPECT_EQ(set_number(kSetBlacklistAction, 9, 1), 0);
  EXPECT_EQ(set_number(kSetBlacklistTimer, 9, 1), 0);
  EXPECT_EQ(set_number(kSetSteerType, 9, kBlacklist), 0);
  EXPECT_EQ(place_of(kHomebody), "");
  EXPECT_EQ(status(".blacklist[].seconds_left"), "null");
  EXPECT_EQ(set_number(kSetBlacklistAction, 9, 0), 0);
  EXPECT_EQ(set_number(kSetSteerType, 9, kBlacklist), 0);
  EXPECT_EQ(place_of(kHomebody), "ra8");
  EXPECT_EQ(set_number(kSetBlacklistAction, 9, 3), 0);
  EXPECT_EQ(set_number(kSetSteerType, 9, kBlacklist), -1);
  EXPECT_EQ(set_number(kSetSteerType, 9, 2), -1);
  EXPECT_EQ(profile_value("/tmp/mt76xx_5.dat", "HNCSteerSTAType"), "2");
  EXPECT_EQ(count_errors("**ERROR** wlan_setHncSteerStaType Action type illegal. \n "), 1);
  EXPECT_EQ(count_errors("**ERROR** wlan_setHncSteerStaType Steer type illegal. \n "), 1);
}

TEST(Steering, WithoutABlacklistActionTheAccessListKeepsTheStationOut) {
  run("sed -i '/^HNCSteerBlackListAction=/d' /tmp/mt76xx_5.dat");
  bring_up();
  EXPECT_EQ(set_text(kSetSteerMac, 9, kHomebody), 0);
  EXPECT_EQ(set_number(kSetSteerType, 9, kBlacklist), 0);
  EXPECT_EQ(place_of(kHomebody), "");
  EXPECT_EQ(status(".interfaces[] | select(.name == \"ra8\") | .access | tostring"),
            "{\"policy\":2,\"list\":[\"" + kHomebody + "\"]}");
  EXPECT_EQ(records(), "");
  // A foreign text is at most one word of the command.
  EXPECT_EQ(set_text(kSetSteerMac, 9, "$(touch /tmp/p);"), 0);
  EXPECT_EQ(set_number(kSetSteerType, 9, kDisconnect), 0);
  EXPECT_FALSE(exists("/tmp/p"));
}

TEST(Steering, NothingIsSteeredBeforeTheInit) {
  start_lifecycle_daemon();
  EXPECT_EQ(set_text(kSetSteerMac, 1, kRoamer), 0);
  EXPECT_EQ(set_number(kSetSteerType, 1, kDisconnect), -1);
  EXPECT_EQ(profile_value("/tmp/mt76xx_24.dat", "HNCSteerSTAType"), "0");
  EXPECT_EQ(count_errors("**ERROR** wlan_setHncSteerStaType dirver isn't inited. \n "), 1);
}

TEST(SteeringKeys, AreSetAndReadBackThroughTheWire) {
  start_daemon();
  const std::string payload(1025, 'a');
  EXPECT_EQ(set_text(kSetFramePayload, 9, payload), 0);
  EXPECT_EQ(set_text(280, 9, "10"), 0);
  EXPECT_EQ(set_text(kSetFrameMac, 9, kRoamer), 0);
  EXPECT_EQ(set_text(kSetSteerMac, 9, kHomebody), 0);
  EXPECT_EQ(set_number(kSetBlacklistTimer, 9, 0xFFFFFFFF), 0);
  const auto payload_of = [](uint32_t procedure) {
    reply_message reply = {};
    EXPECT_TRUE(call(procedure, xdr_word(9), &reply));
    return reply.payload;
  };
  const std::string head = xdr_word(1) + xdr_word(0);
  EXPECT_EQ(payload_of(285), head + xdr_text(payload + std::string(1, '\0')));
  EXPECT_EQ(payload_of(281), head + xdr_text(std::string("10\0", 3)));
  EXPECT_EQ(payload_of(283), head + xdr_text(kRoamer + '\0'));
  EXPECT_EQ(payload_of(265), head + xdr_text(kHomebody + '\0'));
  EXPECT_EQ(payload_of(269).substr(0, 12), xdr_word(1) + xdr_word(4) + xdr_word(0));
  EXPECT_EQ(payload_of(271).substr(0, 12), xdr_word(1) + xdr_word(4) + xdr_word(0xFFFFFFFF));
}
