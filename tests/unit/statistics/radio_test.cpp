#include "statistics/radio.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

#include "datagram_daemon.h"
#include "statistics/radstat_sockets.h"
#include "unit_support.h"

static const std::string kRequest("result\0", 7);

// The values of all getters, in order.
static std::vector<int64_t> all_values(int index) {
  int32_t cst = 7, ap_act = 7, busy = 7, min = 7, max = 7, median = 7, average = 7, retry = 7;
  int64_t sent = 7, received = 7;
  int64_t table[kRssiEntries];
  std::fill(table, table + kRssiEntries, 7);
  EXPECT_EQ(wlan_getChannelStatistics(index, &cst, &ap_act, &busy), 0);
  EXPECT_EQ(wlan_getChannelNoiseFloor(index, &min, &max, &median, &average), 0);
  EXPECT_EQ(wlan_getRetransmissionMetric(index, &retry), 0);
  EXPECT_EQ(wlan_getRadioTxPackets(index, &sent), 0);
  EXPECT_EQ(wlan_getRadioRxPackets(index, &received), 0);
  EXPECT_EQ(wlan_getRSSITable(index, table), 0);
  std::vector<int64_t> values = {cst,    ap_act,  busy,  min,  max,
                                 median, average, retry, sent, received};
  values.insert(values.end(), table, table + kRssiEntries);
  return values;
}

// The getters' initial values: -1, and 0 for the packet counts.
static std::vector<int64_t> presets() {
  std::vector<int64_t> values(10 + 37, -1);
  values[8] = values[9] = 0;
  return values;
}

// A reply in the daemon's order: 41 13 32, noise -84 -95 -91 -90, retry 3, packets, and
// 37 RSSI values from -100 upwards.
static std::string good_reply(int64_t sent = 123456) {
  std::vector<int64_t> words = {41, 13, 32, -84, -95, -91, -90, 3, sent, -5};
  for (int i = 0; i < 37; ++i)
    words.push_back(-100 + i);
  words.push_back(4711);
  return little_endian(words);
}

static std::vector<int64_t> good_values() {
  std::vector<int64_t> values = {41, 13, 32, -95, -84, -91, -90, 3, 123456, -5};
  for (int i = 0; i < 37; ++i)
    values.push_back(-100 + i);
  return values;
}

static std::vector<std::optional<std::string>> times(size_t count, const std::string& reply) {
  return std::vector<std::optional<std::string>>(count, reply);
}

TEST(RadioStatistics, EveryGetterAsksTheDaemonOfItsRadioAndFindsItsFields) {
  datagram_daemon daemon;
  for (const auto& [index, path] : {std::pair(1, kRa0), std::pair(9, kRa8)}) {
    ASSERT_EQ(good_reply().size(), 192u);
    start_datagram_daemon(path, times(6, good_reply()), &daemon);
    EXPECT_EQ(all_values(index), good_values());
    EXPECT_EQ(end_datagram_daemon(&daemon), std::vector<std::string>(6, kRequest));
  }
}

TEST(RadioStatistics, WithoutADaemonThePresetsStand) {
  const std::string errors = errors_of([] {
    for (const int index : {1, 9, 0, 17, -1, INT_MIN, INT_MAX}) {
      EXPECT_EQ(all_values(index), presets()) << index;
    }
  });
  EXPECT_EQ(count_of(errors, rev_error_prefix("rad_ctrl_request_buffered") + "Could not connect\n"),
            7 * 6);
}

TEST(RadioStatistics, ValuesOfADaemonThatIsGoneAreNotServed) {
  datagram_daemon daemon;
  start_datagram_daemon(kRa0, times(6, good_reply()), &daemon);
  EXPECT_EQ(all_values(1), good_values());
  end_datagram_daemon(&daemon);
  unlink(kRa0.c_str());
  errors_of([] { EXPECT_EQ(all_values(1), presets()); });
}

TEST(RadioStatistics, SilentDaemonLeavesThePresetToo) {
  datagram_daemon daemon;
  start_datagram_daemon(kRa0, {good_reply(), std::nullopt}, &daemon);
  int percent = 7;
  EXPECT_EQ(wlan_getRetransmissionMetric(1, &percent), 0);
  EXPECT_EQ(percent, 3);
  const double waited =
      seconds_of([&] { EXPECT_EQ(wlan_getRetransmissionMetric(1, &percent), 0); });
  EXPECT_EQ(percent, -1);
  EXPECT_LT(waited, 3.0);
  end_datagram_daemon(&daemon);
}

TEST(RadioStatistics, ShortReplyReadsAsZeroBehindItsEnd) {
  datagram_daemon daemon;
  start_datagram_daemon(kRa0, times(6, good_reply().substr(0, 42)), &daemon);
  std::vector<int64_t> expected = good_values();
  std::fill(expected.begin() + 10, expected.end(), 0);
  // The reply ends within the first entry: half of -100, which is 0xFFFFFF9C.
  expected[10] = 0xFF9C;
  EXPECT_EQ(all_values(1), expected);
  end_datagram_daemon(&daemon);
}

TEST(RadioStatistics, ZerosBringTheLastGoodValuesOfTheSameRadioBack) {
  datagram_daemon ra0;
  datagram_daemon ra8;
  std::vector<std::optional<std::string>> replies = times(7, std::string(192, '\0'));
  start_datagram_daemon(kRa8, replies, &ra8);
  replies[0] = good_reply();
  start_datagram_daemon(kRa0, replies, &ra0);
  int percent = 7;
  EXPECT_EQ(wlan_getRetransmissionMetric(1, &percent), 0);
  EXPECT_EQ(all_values(1), good_values());
  EXPECT_EQ(all_values(9), std::vector<int64_t>(47, 0));
  end_datagram_daemon(&ra0);
  end_datagram_daemon(&ra8);
}

TEST(RadioStatistics, CountsAreSignExtended) {
  datagram_daemon daemon;
  start_datagram_daemon(kRa0, {good_reply(0x80000000), good_reply(0x7FFFFFFF)}, &daemon);
  int64_t count = 7;
  EXPECT_EQ(wlan_getRadioTxPackets(1, &count), 0);
  EXPECT_EQ(count, -2147483648LL);
  EXPECT_EQ(wlan_getRadioTxPackets(1, &count), 0);
  EXPECT_EQ(count, 2147483647LL);
  end_datagram_daemon(&daemon);
}

TEST(RadioStatistics, ValuesAreTracedWhenTheyCame) {
  switch_console_on();
  datagram_daemon daemon;
  start_datagram_daemon(kRa0, times(6, good_reply()), &daemon);
  EXPECT_EQ(output_of([] { all_values(1); }),
            rev_prefix("wlan_getChannelStatistics") +
                "Channel Statistics - CST: 41% AP_act: 13% BusyTime: 32%\n" +
                rev_prefix("wlan_getChannelNoiseFloor") +
                "Channel NF - Min: -95 Max: -84 Med: -91 Avg: -90\n" +
                rev_prefix("wlan_getRetransmissionMetric") + "Retry percent : 3%\n" +
                rev_prefix("wlan_getRadioTxPackets") + "TxCount : 123456\n" +
                rev_prefix("wlan_getRadioRxPackets") + "Rx Count : -5\n" +
                rev_prefix("wlan_getRSSITable") + "Completed copying 37 RSSI table entries\n");
  end_datagram_daemon(&daemon);
  unlink(kRa0.c_str());
  EXPECT_EQ(output_of([] { errors_of([] { all_values(1); }); }), "");
}

// The commands that the switch runs, without "executing" and the prefix.
static std::string commands_of(int index, int enable, int report, int measure) {
  switch_console_on();
  std::string commands;
  const std::string output = output_of([&] {
    errors_of([&] { EXPECT_EQ(wlan_setRadStatEnable(index, enable, report, measure), 0); });
  });
  const std::string begin = rev_prefix("wlan_setRadStatEnable_1") + "executing ";
  for (size_t at = 0; at < output.size();) {
    EXPECT_EQ(output.compare(at, begin.size(), begin), 0) << output.substr(at);
    const size_t end = output.find('\n', at) + 1;
    commands += output.substr(at + begin.size(), end - at - begin.size());
    at = end;
  }
  return commands;
}

TEST(RadStatEnable, CommandsRunInOrder) {
  EXPECT_EQ(commands_of(1, 1, 10, 2),
            "ln -s -T /bin/radstat /var/run/radstat0\n"
            "killall radstat0\n"
            "iwpriv ra0 set ApEnableRadioChStats=1;\n"
            "/var/run/radstat0 -i ra0 -r 10 -m 2 -R 0&\n");
  EXPECT_EQ(commands_of(1, 0, 10, 2),
            "killall radstat0\n"
            "iwpriv ra0 set ApEnableRadioChStats=0;\n");
  EXPECT_EQ(commands_of(9, 7, INT_MIN, INT_MAX),
            "ln -s -T /bin/radstat /var/run/radstat8\n"
            "killall radstat8\n"
            "iwpriv ra8 set ApEnableRadioChStats=1;\n"
            "/var/run/radstat8 -i ra8 -r -2147483648 -m 2147483647 -R 0&\n");
  EXPECT_EQ(commands_of(9, 0, 0, 0),
            "killall radstat8\n"
            "iwpriv ra8 set ApEnableRadioChStats=0;\n");
  std::string driver;
  for (const std::string& line : driver_requests()) {
    for (const char* text : {"ApEnableRadioChStats=1", "ApEnableRadioChStats=0"}) {
      if (!contains(line, text)) continue;
      driver += std::string(contains(line, "\"ra0\"") ? "ra0 " : "ra8 ") + text + "\n";
    }
  }
  EXPECT_EQ(driver,
            "ra0 ApEnableRadioChStats=1\nra0 ApEnableRadioChStats=0\n"
            "ra8 ApEnableRadioChStats=1\nra8 ApEnableRadioChStats=0\n");
}

TEST(RadStatEnable, OtherIndexesSwitchNoDriver) {
  EXPECT_EQ(commands_of(2, 1, -1, 0),
            "ln -s -T /bin/radstat /var/run/radstat1\n"
            "killall radstat1\n"
            "/var/run/radstat1 -i ra1 -r -1 -m 0 -R 0&\n");
  EXPECT_EQ(commands_of(17, 0, 1, 1),
            "ln -s -T /bin/radstat /var/run/radstat16\n"
            "killall radstat16\n");
  EXPECT_EQ(commands_of(INT_MAX, 0, 1, 1),
            "ln -s -T /bin/radstat /var/run/radstat2147483646\n"
            "killall radstat2147483646\n");
  EXPECT_EQ(last_radstat_index, INT_MAX);
  EXPECT_TRUE(driver_requests().empty());
}

TEST(RadStatEnable, LinkThatLeadsNowhereIsThereAndNoneIsMade) {
  ASSERT_EQ(symlink("/bin/none", "/var/run/radstat0"), 0);
  EXPECT_EQ(commands_of(1, 0, 1, 1), "killall radstat0\niwpriv ra0 set ApEnableRadioChStats=0;\n");
}

TEST(RadStatEnable, IndexBelowOneIsRefusedThoughTheSettingAnswersZero) {
  EXPECT_EQ(last_radstat_index, -1);
  for (const int index : {0, -1, INT_MIN}) {
    EXPECT_EQ(commands_of(index, 1, 1, 1), "");
    EXPECT_EQ(wlan_setRadStatEnable_1(index, 1, 1, 1, 1), -1);
  }
  EXPECT_EQ(last_radstat_index, -1);
  EXPECT_TRUE(names_in("/var/run", "radstat").empty());
}

TEST(RadStatEnable, DaemonIsStartedAnewWithItsOptionsAndStopped) {
  const auto daemons = [] { return run("pgrep -x radstat0"); };
  errors_of([] { EXPECT_EQ(wlan_setRadStatEnable_1(1, 1, 5, 2, 3), 0); });
  EXPECT_TRUE(wait_until([] {
    return contains(read_file("/run/gwbox/radstat.jsonl"),
                    R"("name":"radstat0","interface":"ra0","r":"5","m":"2","R":"3"})");
  })) << read_file("/run/gwbox/radstat.jsonl");
  const std::string first = daemons();
  errors_of([] { EXPECT_EQ(wlan_setRadStatEnable(1, 1, 6, 2), 0); });
  EXPECT_TRUE(wait_until([&] { return !daemons().empty() && !contains(daemons(), first); }));
  EXPECT_EQ(last_radstat_index, 1);
  errors_of([] { EXPECT_EQ(wlan_setRadStatEnable(1, 0, 6, 2), 0); });
  EXPECT_TRUE(wait_until([&] { return daemons().empty(); }));
}

TEST(RadStatEnable, AfterDisablingZerosReadAsMinusOneForThatRadioOnly) {
  datagram_daemon ra0;
  datagram_daemon ra8;
  std::vector<std::optional<std::string>> replies = times(7, std::string(192, '\0'));
  replies[0] = good_reply();
  start_datagram_daemon(kRa0, replies, &ra0);
  start_datagram_daemon(kRa8, replies, &ra8);
  int percent = 0;
  EXPECT_EQ(wlan_getRetransmissionMetric(1, &percent), 0);
  EXPECT_EQ(wlan_getRetransmissionMetric(9, &percent), 0);
  errors_of([] { EXPECT_EQ(wlan_setRadStatEnable(9, 0, 1, 1), 0); });
  EXPECT_EQ(all_values(9), std::vector<int64_t>(47, -1));
  EXPECT_EQ(all_values(1), good_values());
  end_datagram_daemon(&ra0);
  end_datagram_daemon(&ra8);
}
