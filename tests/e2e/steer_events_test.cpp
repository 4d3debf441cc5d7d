#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr uint32_t kGetSteerEventReport = 301;

static void start_control_daemon() {
  run("mtk_ctrl </dev/null >/dev/null 2>&1 &");
  ASSERT_TRUE(wait_until([] { return exists("/var/run/mtk_ctrl_path"); }));
}

// The report's bytes. Stores the return code in *code.
static std::string report_of(uint32_t radio, int32_t* code, double seconds = 2) {
  reply_message reply = {};
  EXPECT_TRUE(call(kGetSteerEventReport, xdr_word(radio), &reply, seconds));
  *code = static_cast<int32_t>(word_at(reply.payload, 0));
  EXPECT_EQ(word_at(reply.payload, 4), 0u);
  EXPECT_EQ(word_at(reply.payload, 8), 1156u);
  EXPECT_EQ(reply.payload.size(), 12u + 1156u);
  return reply.payload.substr(12);
}

static std::string bytes(std::initializer_list<int> values) {
  std::string text;
  for (const int value : values)
    text += static_cast<char>(value);
  return text;
}

TEST(SteerEvents, EventsOfTheRadioReachTheCaller) {
  set_companion("mtk_ctrl.events",
                "'[{\"type\":2,\"code\":-7,\"mac\":\"02:0c:43:aa:bb:cc\",\"radio\":8},"
                "{\"type\":3,\"code\":1,\"mac\":\"02:0c:43:00:00:02\"}]'");
  start_daemon();
  start_control_daemon();
  int32_t code = 99;
  const std::string report = report_of(9, &code);
  EXPECT_EQ(code, 0);
  EXPECT_EQ(report.substr(0, 24), bytes({2, 0, 0, 0}) + "02:0c:43:aa:bb:cc" + bytes({0, 0, 0}));
  EXPECT_NE(report.substr(24, 4), bytes({0, 0, 0, 0})) << "the time of the event";
  EXPECT_EQ(report.substr(28, 8), bytes({'-', '7', 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(report.substr(36, 21), bytes({3, 0, 0, 0}) + "02:0c:43:00:00:02");
  EXPECT_EQ(report.substr(72, 1080), std::string(1080, '\0'));
  EXPECT_EQ(report.substr(1152), bytes({2, 0, 0, 0}));
  EXPECT_EQ(report_of(1, &code).substr(1152), bytes({1, 0, 0, 0}));
  EXPECT_EQ(run("jq -c '[.size, .command, .radio]' /run/gwbox/mtk_ctrl.jsonl"),
            "[16,1,8]\n[16,1,0]\n");
}

TEST(SteerEvents, FortyEventsAreThirtyTwoAndACountOfForty) {
  set_companion("mtk_ctrl.events", "\"$(jq -nc '[range(40) | {type: (. + 1)}]')\"");
  start_daemon();
  start_control_daemon();
  int32_t code = 99;
  const std::string report = report_of(1, &code);
  EXPECT_EQ(code, 0);
  for (size_t i = 0; i < 32; ++i) {
    EXPECT_EQ(report.substr(36 * i, 4), bytes({static_cast<int>(i) + 1, 0, 0, 0})) << i;
  }
  EXPECT_EQ(report.substr(1152), bytes({40, 0, 0, 0}));
}

TEST(SteerEvents, FailuresAnswerMinusOneAndZeros) {
  // The silent control daemon costs two seconds.
  start_daemon();
  int32_t code = 99;
  const std::string zeros(1156, '\0');
  EXPECT_EQ(report_of(1, &code), zeros);
  EXPECT_EQ(code, -1);
  EXPECT_NE(daemon_errors().find("wlan_getSteerEventReport Could not connect\n"),
            std::string::npos);
  start_control_daemon();
  set_companion("mtk_ctrl.status", "4");
  EXPECT_EQ(report_of(1, &code), zeros);
  EXPECT_EQ(code, -1);
  EXPECT_NE(daemon_errors().find("wlan_getSteerEventReport get event failed.\n"),
            std::string::npos);
  set_companion("mtk_ctrl.behaviour", "silent");
  EXPECT_EQ(report_of(1, &code, 4), zeros);
  EXPECT_EQ(code, -1);
  EXPECT_NE(daemon_errors().find("wlan_getSteerEventReport request message failed.\n"),
            std::string::npos);
}
