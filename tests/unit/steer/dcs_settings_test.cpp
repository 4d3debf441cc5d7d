#include "steer/dcs_settings.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "datagram_daemon.h"
#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "unit_support.h"

static const std::string kDcsDaemon = "/var/run/dcsD";

namespace {

struct setting {
  int (*set)(int index, int value);
  std::string key;
  bool told_as_text;
};

}  // namespace

static const setting kSettings[] = {
    {wlan_setMSODCSOn, "MSODCSOn", false},
    {wlan_setUSERDCSOn, "USERDCSOn", false},
    {wlan_setDCSServingChannelSampleTime, "DCSSerChSampTime", true},
    {wlan_setDCSServingChannelSampleNum, "DCSSerChSampNum", true},
    {wlan_setDCSMediumUtilizationThreshold, "DCSMedUtThresHold", true},
    {wlan_setDCSOffChannelScanPeriod, "DCSOffChScanPeriod", true},
    {wlan_setDCSOffChannelScanSampleNum, "DCSOffChScanSampNum", true},
    {wlan_setDCSChannelSwitchTimeWindow, "DCSChSwitchTimeWin", true},
    {wlan_setDCSChannelSwitchLimitedNum, "DCSChSwitchLimitedNum", true},
    {wlan_setDCSMediumUtilizationWeight, "DCSMedUtWeight", true},
    {wlan_setDCSMediumUtilizationLatestSampleWeight, "DCSMedUtLatestSampWeight", true},
    {wlan_setDCSRadioChannelPowerAjuster, "DCSRadioChPowerAjuster", true},
    {wlan_setDCSDebugLevel, "DCSDebugLevel", false},
};

// The datagram that announces a setting as text.
static std::string text_message(const std::string& text) {
  std::string bytes = little_endian({1, 0, static_cast<int64_t>(text.size()) + 1}) + text;
  bytes.resize(268, '\0');
  return bytes;
}

static std::string level_message(int64_t level) {
  std::string bytes = little_endian({3, 0, 0, level});
  bytes.resize(268, '\0');
  return bytes;
}

static void start_daemon(datagram_daemon* daemon) {
  start_datagram_daemon(kDcsDaemon, {}, daemon);
}

TEST(DcsSettings, EachWritesItsKeyAndTellsTheDaemon) {
  datagram_daemon daemon;
  start_daemon(&daemon);
  std::vector<std::string> expected;
  int value = 101;
  for (const setting& one : kSettings) {
    EXPECT_EQ(one.set(1, ++value), 0) << one.key;
    EXPECT_EQ(profile_value(kProfile24, one.key), std::to_string(value));
    EXPECT_NE(profile_value(kProfile5, one.key), std::to_string(value));
    if (one.told_as_text) expected.push_back(text_message(one.key + "=" + std::to_string(value)));
  }
  expected.push_back(level_message(114));
  EXPECT_EQ(end_datagram_daemon(&daemon), expected);
}

TEST(DcsSettings, DebugLevelGoesAsANumberWithoutALength) {
  datagram_daemon daemon;
  start_daemon(&daemon);
  EXPECT_EQ(wlan_setDCSDebugLevel(1, 5), 0);
  EXPECT_EQ(wlan_setDCSDebugLevel(1, -2), 0);
  EXPECT_EQ(profile_value(kProfile24, "DCSDebugLevel"), "-2");
  EXPECT_EQ(end_datagram_daemon(&daemon),
            (std::vector<std::string>{level_message(5), level_message(0xFFFFFFFE)}));
}

TEST(DcsSettings, IndexSelectsTheProfileAndValuesAreSigned) {
  datagram_daemon daemon;
  start_daemon(&daemon);
  int value = -1;
  for (const int index : {0, 8, -1, INT_MIN, 9, 17, INT_MAX}) {
    EXPECT_EQ(wlan_setDCSServingChannelSampleNum(index, --value), 0);
    EXPECT_EQ(profile_value(index < 9 ? kProfile24 : kProfile5, "DCSSerChSampNum"),
              std::to_string(value))
        << index;
  }
  EXPECT_EQ(profile_value(kProfile24, "DCSSerChSampNum"), "-5");
  EXPECT_EQ(wlan_setDCSServingChannelSampleNum(1, INT_MIN), 0);
  EXPECT_EQ(wlan_setDCSServingChannelSampleNum(1, INT_MAX), 0);
  const std::vector<std::string> requests = end_datagram_daemon(&daemon);
  ASSERT_EQ(requests.size(), 9u);
  EXPECT_EQ(requests[0], text_message("DCSSerChSampNum=-2"));
  EXPECT_EQ(requests[7], text_message("DCSSerChSampNum=-2147483648"));
  EXPECT_EQ(requests[8], text_message("DCSSerChSampNum=2147483647"));
}

TEST(DcsSettings, SwitchesStartAndStopTheDaemonAndTellItNothing) {
  set_profile_value(kProfile24, "RadioOn", "1");
  set_profile_value(kProfile24, "Channel", "0");
  datagram_daemon listening;
  start_daemon(&listening);
  EXPECT_EQ(wlan_setMSODCSOn(1, 1), 0);
  EXPECT_EQ(run("pgrep -x dcs"), "") << "only one of the switches is on";
  EXPECT_EQ(end_datagram_daemon(&listening).size(), 0u);
  unlink(kDcsDaemon.c_str());
  EXPECT_EQ(wlan_setUSERDCSOn(1, 1), 0);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc dcs") == "1\n"; }));
  EXPECT_TRUE(wait_until([] { return exists(kDcsDaemon); }));
  EXPECT_EQ(wlan_setMSODCSOn(1, 0), 0);
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc dcs") == "0\n"; }));
  EXPECT_FALSE(exists("/run/gwbox/dcs.jsonl")) << "it was told something";
}

TEST(DcsSettings, WithoutADaemonAllIsWellAndNothingSaid) {
  const int before = open_descriptors();
  const std::string errors = errors_of([] {
    for (const setting& one : kSettings) {
      EXPECT_EQ(one.set(9, 77), 0) << one.key;
      EXPECT_EQ(profile_value(kProfile5, one.key), "77");
    }
    EXPECT_EQ(wlan_setDCSRSSIWeight(9, "1,2"), 0);
    close(listen_on(kDcsDaemon));
    EXPECT_EQ(wlan_setDCSDebugLevel(9, 78), 0) << "a socket that nobody has open";
  });
  EXPECT_EQ(errors, "");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(DcsSettings, ProfileThatCannotBeWrittenIsTracedAndTheDaemonTold) {
  write_file(kProfile24, "Other=1\n");
  switch_console_on();
  datagram_daemon daemon;
  start_daemon(&daemon);
  std::string output =
      output_of([] { errors_of([] { EXPECT_EQ(wlan_setDCSOffChannelScanPeriod(1, 9), 0); }); });
  EXPECT_TRUE(contains(output, rev_prefix("dcsSetNoitfyF") +
                                   "dcsSetNoitfyF:failed to update wifi profile for "
                                   "DCSOffChScanPeriod ret:0\n "))
      << output;
  EXPECT_TRUE(
      contains(output, rev_prefix("notifyDCSSettingChanges") + "notifyDCSSettingChanges:socket "))
      << output;
  EXPECT_TRUE(output.ends_with(" is created\n")) << output;
  output = output_of([] { errors_of([] { EXPECT_EQ(wlan_setDCSRSSIWeight(1, "9"), 0); }); });
  EXPECT_TRUE(contains(output, rev_prefix("wlan_setDCSRSSIWeight") +
                                   "wlan_setDCSRSSIWeight:failed to update wifi profile "
                                   "DCSRSSIWeight ret:0\n "))
      << output;
  EXPECT_EQ(end_datagram_daemon(&daemon).size(), 2u);
  EXPECT_EQ(read_file(kProfile24), "Other=1\n");
}

TEST(DcsSettings, ValueInPlaceIsNoFailureAndToldAgain) {
  datagram_daemon daemon;
  start_daemon(&daemon);
  switch_console_on();
  const std::string output = output_of([] {
    errors_of([] {
      for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(wlan_setDCSOffChannelScanPeriod(1, 9), 0);
        EXPECT_EQ(wlan_setDCSRSSIWeight(1, "9"), 0);
      }
    });
  });
  EXPECT_EQ(count_of(output, " is created\n"), 4) << output;
  EXPECT_FALSE(contains(output, "failed to update")) << output;
  EXPECT_EQ(end_datagram_daemon(&daemon).size(), 4u);
}

TEST(DcsSettings, SwitchesActThoughTheProfileCannotBeWritten) {
  // The 2.4 GHz profile decides, but an index from 9 on writes the 5 GHz one.
  for (const char* key : {"MSODCSOn", "USERDCSOn", "RadioOn"})
    set_profile_value(kProfile24, key, "1");
  set_profile_value(kProfile24, "Channel", "0");
  unlink(kProfile5);
  note_commands();
  for (int (*const set)(int index, int value) : {wlan_setMSODCSOn, wlan_setUSERDCSOn}) {
    errors_of([&] { EXPECT_EQ(set(9, 1), 0); });
    EXPECT_EQ(commands(), "dcs&\n");
    errors_of([&] { EXPECT_EQ(set(9, 0), 0); });
    EXPECT_TRUE(commands().starts_with("/bin/kill $(pgrep -f dcs"));
  }
}

// The datagram of a bare text.
static std::string bare_message(std::string text) {
  text.resize(268, '\0');
  return text;
}

TEST(DcsSettings, RssiWeightIsATextWithoutTypeAndLength) {
  struct {
    std::string weight;
    std::string profile;
    std::string told;
  } const cases[] = {
      {"1;2;3", "1;2;3", "DCSRSSIWeight=1;2;3"},
      {"", "", "DCSRSSIWeight="},
      {"'$(touch /tmp/pwned)`\"%n%s", "'$(touch /tmp/pwned)`\"%n%s",
       "DCSRSSIWeight='$(touch /tmp/pwned)`\"%n%s"},
      // The message to the daemon is cut to 95 characters.
      {std::string(200, 'w'), std::string(200, 'w'), "DCSRSSIWeight=" + std::string(81, 'w')},
      {std::string(81, 'x'), std::string(81, 'x'), "DCSRSSIWeight=" + std::string(81, 'x')},
  };
  for (const auto& row : cases) {
    datagram_daemon daemon;
    start_daemon(&daemon);
    EXPECT_EQ(wlan_setDCSRSSIWeight(9, row.weight.c_str()), 0);
    EXPECT_EQ(profile_value(kProfile5, "DCSRSSIWeight"), row.profile);
    EXPECT_EQ(end_datagram_daemon(&daemon), std::vector<std::string>{bare_message(row.told)});
  }
  EXPECT_EQ(profile_value(kProfile24, "DCSRSSIWeight"), "");
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(DcsSettings, RssiWeightThatTheProfileRefusesIsStillTold) {
  const std::string before = read_file(kProfile24);
  for (const std::string& weight : {std::string("a\nAuthMode=OPEN"), std::string(8000, 'a')}) {
    datagram_daemon daemon;
    start_daemon(&daemon);
    errors_of([&] { EXPECT_EQ(wlan_setDCSRSSIWeight(1, weight.c_str()), 0); });
    EXPECT_EQ(end_datagram_daemon(&daemon),
              std::vector<std::string>{bare_message(("DCSRSSIWeight=" + weight).substr(0, 95))});
  }
  EXPECT_EQ(read_file(kProfile24), before);
}

static std::string not_sent(const std::string& text) {
  return rev_error_prefix("notifyDCSSettingChanges") +
         "notifyDCSSettingChanges: failed to send message " + text + "\n";
}

TEST(DcsSettings, FailureToSendIsReportedWithTheTextBehindTheHeader) {
  const int daemon = listen_on(kDcsDaemon);
  const int before = open_descriptors();
  fail_system_call(SYS_sendto, ENOBUFS);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setDCSMediumUtilizationWeight(1, 51), -1); }),
            not_sent("DCSMedUtWeight=51"));
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setDCSDebugLevel(1, 5), -1); }), not_sent("\\x05"));
  // For a bare text, the message shows the bytes at the payload's position.
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setDCSRSSIWeight(1, "%n50"), -1); }), not_sent("t=%n50"));
  const std::string unterminated(268, 'u');
  EXPECT_EQ(errors_of([&] { EXPECT_EQ(notifyDCSSettingChanges(1, unterminated.data()), -1); }),
            not_sent(std::string(256, 'u')));
  EXPECT_EQ(open_descriptors(), before);
  close(daemon);
}

TEST(DcsSettings, StuckDaemonIsGivenUpAfterTwoSeconds) {
  const int daemon = start_stuck_daemon(kDcsDaemon);
  const double waited =
      seconds_of([] { errors_of([] { EXPECT_EQ(wlan_setDCSDebugLevel(1, 5), -1); }); });
  EXPECT_GE(waited, 1.99);
  EXPECT_LT(waited, 3.0);
  close(daemon);
}

TEST(DcsSettings, WithoutASocketItFailsSilently) {
  fail_system_call(SYS_socket, EMFILE);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(wlan_setDCSDebugLevel(1, 5), -1); }), "");
}
