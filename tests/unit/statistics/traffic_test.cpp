#include "statistics/traffic.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "lying_driver.h"
#include "support/gateway.h"
#include "support/stations.h"
#include "unit_support.h"

static constexpr char kIoctlFailed[] = "ioctl failed (cmd=0x8BE1, sub_cmd=0x67D)\n";
using words = std::vector<uint32_t>;

// Sets a BSS's counters to first, first + 1, ...
static void set_counters(int bss, unsigned first) {
  std::string list;
  for (unsigned i = 0; i < 14; ++i)
    list += (i > 0 ? "," : "") + std::to_string(first + i);
  gwbox("set bss " + std::to_string(bss) + " counters=[" + list + "]");
}

static words basic_words(int bss) {
  basic_stats out;
  memset(&out, 0xEE, sizeof out);
  EXPECT_EQ(wlan_getBasicStats(bss, &out), 0);
  return {out.bytes_sent, out.bytes_received, out.packets_sent, out.packets_received,
          out.associations};
}

static words stats(int bss) {
  traffic_stats out;
  memset(out, 0xEE, sizeof out);
  EXPECT_EQ(wlan_getStats(bss, out), 0);
  EXPECT_EQ(out[kStatsWords], 0xEEEEEEEE);
  return words(out, out + kStatsWords);
}

static words radio_stats(int bss) {
  traffic_stats out = {};
  EXPECT_EQ(wlan_getRadioStats(bss, out), 0);
  return words(out, out + kRadioStatsWords);
}

TEST(Traffic, BasicStatsAreFourCountersAndTheStations) {
  start_radios("ra0 ra1 ra8 ra9");
  set_counters(2, 100);
  set_counters(10, 500);
  set_station(1, "bss=2");
  set_station(2, "bss=2");
  set_station(3, "bss=9");
  EXPECT_EQ(basic_words(2), (words{103, 102, 100, 101, 2}));
  EXPECT_EQ(basic_words(10), (words{503, 502, 500, 501, 0}));
}

TEST(Traffic, CountersAreAskedForWithOneByteLess) {
  start_radios("ra0");
  gwbox("set bss 1 counters=[1,2,3,4,5,6,7,8,9,10,11,12,13,4294967295]");
  EXPECT_EQ(stats(1), (words{7, 5, 9, 10, 8, 6, 11, 12, 13, 0x00FFFFFF, 0}));
  const std::string line = driver_requests().back();
  EXPECT_TRUE(contains(line, R"("interface":"ra0")")) << line;
  EXPECT_TRUE(contains(line, R"("sub":"0x067D")")) << line;
  EXPECT_TRUE(contains(line, R"("length":55,)")) << line;
}

TEST(Traffic, StatsTakeTheirCountersOfTheBss) {
  start_radios("ra0 ra8 ra10");
  set_counters(11, 1000);
  EXPECT_EQ(stats(11), (words{1006, 1004, 1008, 1009, 1007, 1005, 1010, 1011, 1012, 1013, 0}));
  EXPECT_EQ(stats(1), words(11, 0));
}

TEST(Traffic, CountersThatCannotBeReadAreZeros) {
  for (const int bss : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    const std::string errors = errors_of([&] {
      EXPECT_EQ(basic_words(bss), words(5, 0)) << bss;
      EXPECT_EQ(stats(bss), words(11, 0)) << bss;
    });
    EXPECT_EQ(count_of(errors, kIoctlFailed), 2) << errors;
  }
}

TEST(Traffic, BytesOfAFailedReadAreNotUsed) {
  set_profile_value(kProfile24, "BssEnabled", "1;0;0;0;0;0;0;0");
  answer_object_with(0x067D, std::string(56, 'c'), EIO);
  errors_of([] {
    EXPECT_EQ(basic_words(1), words(5, 0));
    EXPECT_EQ(stats(1), words(11, 0));
    EXPECT_EQ(radio_stats(1), words(16, 0));
  });
}

TEST(Traffic, ShortCountersAreZerosBeyondTheirEnd) {
  start_radios("ra0");
  set_counters(1, 7);
  gwbox("fail counters short=8");
  EXPECT_EQ(basic_words(1), (words{0, 0, 7, 8, 0}));
}

TEST(Traffic, CountersAreThereWhenTheStationsAreNot) {
  start_radios("ra0");
  set_counters(1, 7);
  gwbox("fail stations EIO");
  errors_of([] { EXPECT_EQ(basic_words(1), (words{10, 9, 7, 8, 0})); });
}

TEST(Traffic, RadioSumsItsEnabledBsses) {
  start_radios("ra0 ra1 ra2 ra8 ra9");
  set_profile_value(kProfile24, "BssEnabled", "1;0;1;0;0;0;0;0");
  set_profile_value(kProfile5, "BssEnabled", "0;1");
  set_counters(1, 100);
  set_counters(2, 10000);
  set_counters(3, 1000);
  set_counters(9, 50000);
  set_counters(10, 70000);
  // Counters 6, 4, 7, 5, 3, 2, 0 and 1 of BSSs 1 and 3. The rest stay zero.
  const words first = {1112, 1108, 0, 0, 1114, 1110, 0, 0, 0, 0, 0, 1106, 1104, 1100, 1102, 0};
  EXPECT_EQ(radio_stats(1), first);
  EXPECT_EQ(radio_stats(8), first) << "any BSS names its radio";
  EXPECT_EQ(radio_stats(16), (words{70006, 70004, 0, 0, 70007, 70005, 0, 0, 0, 0, 0, 70003, 70002,
                                    70000, 70001, 0}));
}

TEST(Traffic, OnlyAOneEnablesABss) {
  start_radios("ra0 ra1 ra2 ra3 ra4 ra5 ra6 ra7");
  // All fields but the last are cut to two characters; 01 and "1x" count as 1.
  set_profile_value(kProfile24, "BssEnabled", "2;-1;;x;11;01;1x;100");
  for (int bss = 1; bss <= 8; ++bss)
    set_counters(bss, bss == 6 || bss == 7 ? 100 : 5000);
  EXPECT_EQ(radio_stats(1)[13], 200u);
  set_profile_value(kProfile24, "BssEnabled", "100;0;0;0;0;0;0;1");
  EXPECT_EQ(radio_stats(1)[13], 5000u) << "10 is no 1";
}

TEST(Traffic, RadioWithoutEnabledBssesHasZerosAndAsksNothing) {
  start_radios("ra0 ra8");
  set_profile_value(kProfile24, "BssEnabled", "0;0;0;0;0;0;0;0");
  write_file(kProfile5, "Default\n");
  set_counters(1, 100);
  set_counters(9, 100);
  const size_t before = driver_requests().size();
  EXPECT_EQ(radio_stats(1), words(16, 0));
  EXPECT_EQ(radio_stats(9), words(16, 0)) << "no list at all";
  EXPECT_EQ(driver_requests().size(), before);
}

TEST(Traffic, IndexOfNoRadioFails) {
  for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
    traffic_stats out = {};
    EXPECT_EQ(wlan_getRadioStats(bss, out), -1) << bss;
    EXPECT_EQ(words(out, out + kRadioStatsWords), words(16, 0)) << bss;
  }
  EXPECT_TRUE(driver_requests().empty());
}

TEST(Traffic, BssThatCannotBeReadAddsNothingAndSumsWrap) {
  start_radios("ra0 ra1 ra2");
  set_profile_value(kProfile24, "BssEnabled", "1;1;1;0;0;0;0;0");
  gwbox("set bss 1 counters=[4294967295,0,0,0,0,0,0,0,0,0,0,0,0,0]");
  gwbox("set bss 2 counters=[77,0,0,0,0,0,0,0,0,0,0,0,0,0]");
  gwbox("set bss 3 counters=[11,0,0,0,0,0,0,0,0,0,0,0,0,0]");
  gwbox("fail counters@ra1 EIO");
  errors_of([] { EXPECT_EQ(radio_stats(1)[13], 10u); });
}

TEST(Traffic, StatsAreTracedOnTheConsole) {
  start_radios("ra0 ra8");
  set_profile_value(kProfile5, "BssEnabled", "1;0;3");
  switch_log_on();
  switch_console_on();
  EXPECT_EQ(output_of([] { stats(1); }), rev_prefix("wlan_getStats") + "wlan_getStats: index=1\n");
  const std::string radio = rev_prefix("wlan_getRadioStats");
  EXPECT_EQ(output_of([] { radio_stats(12); }),
            radio + "wlan_getRadioStats: index=12\n" + radio + "SSID index=10, bss_enable = 0\n" +
                radio + "SSID index=11, bss_enable = 3\n" + radio +
                "SSID index=12, bss_enable = 0\n" + radio + "SSID index=13, bss_enable = 0\n" +
                radio + "SSID index=14, bss_enable = 0\n" + radio +
                "SSID index=15, bss_enable = 0\n" + radio + "SSID index=16, bss_enable = 0\n");
  traffic_stats none = {};
  EXPECT_EQ(output_of([&] { EXPECT_EQ(wlan_getRadioStats(17, none), -1); }),
            radio + "wlan_getRadioStats: index=17\n");
  EXPECT_EQ(logged(), "");
}
