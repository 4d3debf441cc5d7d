#include <gtest/gtest.h>

#include <utility>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr uint32_t kSetMsoOn = 0x01000084;
static constexpr uint32_t kSetUserOn = 0x01000086;
static constexpr uint32_t kSetRssiWeight = 0x0100009C;
static constexpr uint32_t kSetDebugLevel = 0x0100009D;

static int32_t set(uint32_t procedure, uint32_t radio, int value) {
  return call_for_code(procedure, xdr_word(radio) + xdr_word(static_cast<uint32_t>(value)));
}

static void start_dcs() {
  set_profile_value(kProfile24, "RadioOn", "1");
  set_profile_value(kProfile24, "Channel", "0");
  EXPECT_EQ(set(kSetUserOn, 1, 1), 0);
  EXPECT_EQ(set(kSetMsoOn, 1, 1), 0);
  EXPECT_TRUE(wait_until([] { return exists("/var/run/dcsD"); })) << daemon_errors();
}

TEST(Dcs, SwitchesStartAndStopItsDaemon) {
  start_daemon();
  start_dcs();
  EXPECT_EQ(run("gwbox status --json | jq -c '[.companions[].name]'"), "[\"dcs\"]\n");
  EXPECT_EQ(profile_value(kProfile24, "MSODCSOn"), "1");
  EXPECT_EQ(profile_value(kProfile24, "USERDCSOn"), "1");
  EXPECT_EQ(set(kSetUserOn, 9, 0), 0);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc dcs") == "0\n"; }));
  EXPECT_EQ(profile_value(kProfile24, "USERDCSOn"), "1");
  EXPECT_EQ(profile_value(kProfile5, "USERDCSOn"), "0");
  EXPECT_FALSE(exists("/run/gwbox/dcs.jsonl"));
}

TEST(Dcs, SettingsArriveAtItsDaemon) {
  const std::pair<uint32_t, std::string> settings[] = {
      {0x01000088, "DCSSerChSampTime"},         {0x0100008A, "DCSSerChSampNum"},
      {0x0100008C, "DCSMedUtThresHold"},        {0x0100008E, "DCSOffChScanPeriod"},
      {0x01000090, "DCSOffChScanSampNum"},      {0x01000092, "DCSChSwitchTimeWin"},
      {0x01000094, "DCSChSwitchLimitedNum"},    {0x01000096, "DCSMedUtWeight"},
      {0x01000098, "DCSMedUtLatestSampWeight"}, {0x0100009A, "DCSRadioChPowerAjuster"}};
  start_daemon();
  start_dcs();
  std::string expected;
  int value = -10;
  for (const auto& [procedure, key] : settings) {
    EXPECT_EQ(set(procedure, 9, ++value), 0);
    EXPECT_EQ(profile_value(kProfile5, key), std::to_string(value));
    const std::string text = key + "=" + std::to_string(value);
    expected += "[268,1," + std::to_string(text.size() + 1) + ",\"" + text + "\"]\n";
  }
  EXPECT_EQ(set(kSetDebugLevel, 1, 5), 0);
  EXPECT_EQ(call_for_code(kSetRssiWeight, xdr_word(1) + xdr_text("3;2;1")), 0);
  expected += "[268,3,0,5]\n[268,\"DCSRSSIWeight=3;2;1\"]\n";
  const auto told = [] { return run("jq -c 'del(.time, .hex) | [.[]]' /run/gwbox/dcs.jsonl"); };
  EXPECT_TRUE(wait_until([&] { return told() == expected; })) << told() << "not\n" << expected;
}

TEST(Dcs, WithoutItsDaemonSettingsAreWrittenAndAnswerZero) {
  start_daemon();
  EXPECT_EQ(set(kSetDebugLevel, 0, 5), 0);
  EXPECT_EQ(profile_value(kProfile24, "DCSDebugLevel"), "5");
  EXPECT_EQ(call_for_code(kSetRssiWeight, xdr_word(0x7FFFFFFF) + xdr_text("'; touch /x #")), 0);
  EXPECT_EQ(profile_value(kProfile5, "DCSRSSIWeight"), "'; touch /x #");
  const std::string before = read_file(kProfile5);
  EXPECT_EQ(call_for_code(kSetRssiWeight, xdr_word(9) + xdr_text("a\nAuthMode=OPEN")), 0);
  EXPECT_EQ(call_for_code(kSetRssiWeight, xdr_word(9) + xdr_text(std::string(8000, '%'))), 0);
  EXPECT_EQ(read_file(kProfile5), before);
  EXPECT_EQ(daemon_errors().find("failed to send"), std::string::npos);
}
