#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <vector>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr uint32_t kChannelStatistics = 238;
static constexpr uint32_t kNoiseFloor = 239;
static constexpr uint32_t kTxPackets = 240;
static constexpr uint32_t kRxPackets = 241;
static constexpr uint32_t kRetransmissionMetric = 242;
static constexpr uint32_t kSetRadStatEnable = 243;
static constexpr uint32_t kRssiTable = 244;

static int32_t enable(uint32_t radio, uint32_t on) {
  return call_for_code(kSetRadStatEnable,
                       xdr_word(radio) + xdr_word(on) + xdr_word(10) + xdr_word(2));
}

// Starts the radio's daemon and waits until it listens.
static void enable_and_wait(uint32_t radio) {
  const std::string number = std::to_string(radio - 1);
  EXPECT_EQ(enable(radio, 1), 0);
  EXPECT_TRUE(wait_until([&] {
    return run("pgrep -xc radstat" + number) == "1\n" && exists("/var/run/radstat/ra" + number);
  })) << daemon_errors();
}

// The meaningful words of a getter's reply.
static std::vector<int32_t> words_of(uint32_t procedure, uint32_t radio, double seconds = 2) {
  reply_message reply = {};
  EXPECT_TRUE(call(procedure, xdr_word(radio), &reply, seconds));
  EXPECT_EQ(word_at(reply.payload, 0), 0u);
  const size_t announced = word_at(reply.payload, 4);
  EXPECT_EQ(reply.payload.size(), 4 * (3 + announced));
  std::vector<int32_t> words;
  for (size_t i = 0; i < announced / 4; ++i)
    words.push_back(static_cast<int32_t>(word_at(reply.payload, 8 + 4 * i)));
  return words;
}

static int32_t retries(uint32_t radio) {
  return words_of(kRetransmissionMetric, radio)[0];
}

TEST(RadioStatistics, ValuesOfTheDaemonReachTheCaller) {
  const char* values[][2] = {{"cst", "41"},     {"ap_act", "13"},     {"busy", "32"},
                             {"nf_max", "-84"}, {"nf_min", "-95"},    {"nf_med", "-91"},
                             {"nf_avg", "-90"}, {"retry", "3"},       {"tx", "70000"},
                             {"rx", "-5"},      {"rssi", "[-71,-72]"}};
  for (const auto& [member, value] : values)
    set_companion(std::string("radstat.ra8.") + member, value);
  start_daemon();
  enable_and_wait(9);
  EXPECT_EQ(words_of(kChannelStatistics, 9), (std::vector<int32_t>{41, 13, 32}));
  EXPECT_EQ(words_of(kNoiseFloor, 9), (std::vector<int32_t>{-95, -84, -91, -90}));
  EXPECT_EQ(words_of(kTxPackets, 9), (std::vector<int32_t>{70000, 0}));
  EXPECT_EQ(words_of(kRxPackets, 9), (std::vector<int32_t>{-5, -1}));
  EXPECT_EQ(retries(9), 3);
  std::vector<int32_t> table(74, 0);
  table[0] = -71;
  table[2] = -72;
  table[1] = table[3] = -1;
  EXPECT_EQ(words_of(kRssiTable, 9), table);
  EXPECT_EQ(daemon_errors(), "radstat8: no process found\n");
}

TEST(RadioStatistics, WithoutTheDaemonMinusOnesAndZeroPacketsWithCodeZero) {
  start_daemon();
  EXPECT_EQ(words_of(kChannelStatistics, 1), std::vector<int32_t>(3, -1));
  EXPECT_EQ(words_of(kNoiseFloor, 9), std::vector<int32_t>(4, -1));
  EXPECT_EQ(words_of(kTxPackets, 1), std::vector<int32_t>(2, 0));
  EXPECT_EQ(words_of(kRxPackets, 0x80000000), std::vector<int32_t>(2, 0));
  EXPECT_EQ(retries(0), -1);
  EXPECT_EQ(words_of(kRssiTable, 17), std::vector<int32_t>(74, -1));
  EXPECT_NE(daemon_errors().find("rad_ctrl_request_buffered Could not connect\n"),
            std::string::npos);
}

TEST(RadioStatistics, ZerosAreReplacedUntilStatisticsAreSwitchedOff) {
  set_companion("radstat.ra0.retry", "17");
  start_daemon();
  enable_and_wait(1);
  EXPECT_EQ(retries(1), 17);
  set_companion("radstat.ra0.behaviour", "zeros");
  EXPECT_EQ(retries(1), 17);
  EXPECT_EQ(enable(1, 0), 0);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc radstat0") == "0\n"; }));
  EXPECT_EQ(retries(1), -1);
  enable_and_wait(1);
  EXPECT_EQ(retries(1), -1) << "zeros now bring back what switching off left";
  set_companion("radstat.ra0.behaviour", "normal");
  EXPECT_EQ(retries(1), 17);
}

TEST(RadioStatistics, SwitchReachesDriverAndDaemonOfItsRadioOnly) {
  start_daemon();
  enable_and_wait(1);
  enable_and_wait(9);
  EXPECT_EQ(enable(1, 0), 0);
  EXPECT_EQ(enable(0, 1), 0);
  EXPECT_EQ(enable(0x80000000, 1), 0);
  EXPECT_TRUE(wait_until([] {
    return run("gwbox status --json | jq -c '[.companions[].name]'") == "[\"radstat8\"]\n";
  })) << run("gwbox status");
  EXPECT_EQ(run("jq -r 'select(.text) | .interface + \" \" + .text' /run/gwbox/journal.jsonl"),
            "ra0 ApEnableRadioChStats=1\nra8 ApEnableRadioChStats=1\n"
            "ra0 ApEnableRadioChStats=0\n");
  EXPECT_EQ(run("jq -c '[.name, .interface, .r, .m, .R]' /run/gwbox/radstat.jsonl"),
            "[\"radstat0\",\"ra0\",\"10\",\"2\",\"0\"]\n"
            "[\"radstat8\",\"ra8\",\"10\",\"2\",\"0\"]\n");
}

TEST(RadioStatistics, LateAndShortRepliesNeitherHangNorEndTheService) {
  // Waiting for the late reply takes two seconds.
  set_companion("radstat.ra0.retry", "17");
  set_companion("radstat.ra0.behaviour", "late");
  const pid_t child = service_child(start_daemon());
  enable_and_wait(1);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(words_of(kRetransmissionMetric, 1, 4), std::vector<int32_t>{-1});
  const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited.count(), 1.99);
  EXPECT_LT(waited.count(), 3.0);
  set_companion("radstat.ra0.behaviour", "short");
  // The daemon answers in order, so it has sent the late reply before.
  EXPECT_TRUE(wait_until([] { return retries(1) == 17; }));
  EXPECT_EQ(words_of(kRssiTable, 1), std::vector<int32_t>(74, 0));
  EXPECT_FALSE(exists("/tmp/rad_ctrl_" + std::to_string(child)));
  EXPECT_EQ(kill(child, 0), 0);
}
