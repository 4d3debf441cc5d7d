#include "wlan/stations.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include "lying_driver.h"
#include "support/stations.h"
#include "unit_support.h"

static constexpr char kFailed[] = "ioctl failed (cmd=0x8BEF, sub_cmd=0x0)\n";
static const char* const kBoth[] = {"wlan_getAssocDevicesNum", "wlan_getAssocDevicesTable_2"};

static int stations_of(int bss) {
  int count = 99;
  EXPECT_EQ(wlan_getAssocDevicesNum(bss, &count), 0) << bss;
  return count;
}

TEST(Stations, AreCountedPerBss) {
  start_radios("ra0 ra1 ra8 ra9");
  set_station(1, "bss=1");
  set_station(2, "bss=2");
  set_station(3, "bss=2");
  set_station(4, "bss=9");
  set_station(5, "bss=10");
  set_station(6, "bss=10");
  set_station(7, "bss=10");
  EXPECT_EQ(stations_of(1), 1);
  EXPECT_EQ(stations_of(2), 2);
  EXPECT_EQ(stations_of(3), 0);
  EXPECT_EQ(stations_of(9), 1);
  EXPECT_EQ(stations_of(10), 3);
  EXPECT_EQ(stations_of(16), 0);
  const std::string line = driver_requests().back();
  EXPECT_TRUE(contains(line, R"("interface":"ra15")")) << line;
  EXPECT_TRUE(contains(line, R"("request":"0x8BEF")")) << line;
  // One byte less than the size of the table.
  EXPECT_TRUE(contains(line, R"("length":5123,)")) << line;
}

TEST(Stations, TableIsTheDriversByteByByte) {
  start_radios("ra0 ra1");
  set_station(1,
              "bss=2 rssi=[-48,-127,0,-61] tx_rate=0x6199 rx_rate=0x8211 asleep=true "
              "start.tx_packets=67305985 start.tx_failures=4293844428");
  driver_station_table table = {};
  EXPECT_EQ(wlan_getAssocDevicesTable_2(1, &table), 0);
  std::string bytes(reinterpret_cast<const char*>(&table), sizeof table);
  const std::string connected = bytes.substr(4 + 16, 4);
  EXPECT_LT(static_cast<unsigned char>(connected[0]), 10);
  EXPECT_EQ(connected.substr(1), std::string(3, '\0'));
  bytes.replace(4 + 16, 4, "TIME");
  const std::string expected(
      "\x01\x00\x00\x00"
      "\x01\x02\x00\x5e\x00\x01\x01\x01\x01\x00"  // ApIdx, MAC, Aid, Psm, MimoPs
      "\xd0\x81\x00\xc3\x00\x00"                  // four chains
      "TIME\x99\x61\x00\x00\x11\x82\x00\x00\x00\x00\x00\x00"
      "\x01\x02\x03\x04\xcc\xdd\xee\xff",
      44);
  EXPECT_EQ(bytes.substr(0, 44), expected);
  EXPECT_EQ(bytes.substr(44), std::string(5124 - 44, '\0'));
}

TEST(Stations, TableHoldsThoseOfAllBssesOfTheRadio) {
  start_radios("ra0 ra1 ra8");
  set_station(1, "bss=1");
  set_station(2, "bss=2");
  set_station(3, "bss=9");
  driver_station_table table = {};
  EXPECT_EQ(wlan_getAssocDevicesTable_2(2, &table), 0);
  EXPECT_EQ(table.count, 2u);
  EXPECT_EQ(table.entries[0].bss, 0);
  EXPECT_EQ(table.entries[1].bss, 1);
}

TEST(Stations, FailureOfTheDriverAnswersNone) {
  for (const int bss : {1, 9, 0, 17, -5, INT_MIN, INT_MAX}) {
    driver_station_table table = {};
    int count = 99;
    const std::string errors = errors_of([&] {
      EXPECT_EQ(wlan_getAssocDevicesNum(bss, &count), -1) << bss;
      EXPECT_EQ(wlan_getAssocDevicesTable_2(bss, &table), -1) << bss;
    });
    EXPECT_EQ(count, 0) << bss;
    EXPECT_EQ(table.count, 0u) << bss;
    const std::string failed = rpc_error_prefix("rtpriv_get_ioctl") + kFailed;
    EXPECT_EQ(errors, failed + failed) << bss;
  }
}

TEST(Stations, TableOfAFailedQueryIsNotAnswered) {
  answer_stations_with(std::string(sizeof(driver_station_table), 'x'), EIO);
  driver_station_table table = {};
  errors_of([&] { EXPECT_EQ(wlan_getAssocDevicesTable_2(1, &table), -1); });
  const driver_station_table zero = {};
  EXPECT_EQ(memcmp(&table, &zero, sizeof table), 0);
}

TEST(Stations, CountsThatLieAreBounded) {
  start_radios("ra0 ra1");
  set_station(1, "bss=1");
  set_station(2, "bss=2");
  // Unwritten entries are zeros, which count as stations of BSS 1.
  static constexpr struct {
    const char* said;
    int first, second;
  } kCases[] = {
      {"1", 1, 0},           {"0", 0, 0}, {"128", 127, 1}, {"129", 127, 1}, {"4294967295", 127, 1},
      {"2147483648", 127, 1}};
  for (const auto& c : kCases) {
    gwbox(std::string("fail stations count=") + c.said + " 2");
    EXPECT_EQ(stations_of(1), c.first) << c.said;
    EXPECT_EQ(stations_of(2), c.second) << c.said;
  }
}

TEST(Stations, ShortTableCountsWhatCame) {
  start_radios("ra0 ra1");
  set_station(1, "bss=2");
  set_station(2, "bss=2");
  gwbox("fail stations short=44");
  EXPECT_EQ(stations_of(2), 1);
  gwbox("fail stations short=3");
  EXPECT_EQ(stations_of(2), 0);
  gwbox("fail stations short=0");
  EXPECT_EQ(stations_of(2), 0);
}

TEST(Stations, AppearMoveAndLeaveBetweenCalls) {
  start_radios("ra0 ra1 ra8");
  EXPECT_EQ(stations_of(1), 0);
  set_station(1, "bss=1");
  EXPECT_EQ(stations_of(1), 1);
  set_station(1, "bss=2");
  EXPECT_EQ(stations_of(1), 0);
  EXPECT_EQ(stations_of(2), 1);
  set_station(1, "bss=9");
  EXPECT_EQ(stations_of(2), 0);
  EXPECT_EQ(stations_of(9), 1);
  remove_station(1);
  EXPECT_EQ(stations_of(9), 0);
}

// The traces of a function that reads a table with one station.
static std::string traced_table(const std::string& function, const char* connected) {
  const std::string prefix = rev_prefix(function);
  return prefix + "p_deviceTable->Num = 1\n" + prefix + "RT_802_11_MAC_TABLE entry 0\n" + prefix +
         "ApIdx=1, Aid=1, Psm=1, MimoPs=0\n" + prefix +
         "AvgRssi0=-48, AvgRssi1=-127, AvgRssi2=0\n" + prefix +
         "TxPkts=3000000000, TxFailures=7\n" + prefix + "ConnectedTime=" + connected + "\n" +
         prefix + "02:00:5E:00:01:AB\n\n";
}

TEST(Stations, TableIsTracedOnTheConsoleWithItsConnectedTimeReversed) {
  start_radios("ra0 ra1");
  set_station(0xAB,
              "bss=2 rssi=[-48,-127,0] asleep=true start.tx_packets=3000000000 "
              "start.tx_failures=7");
  switch_log_on();
  switch_console_on();
  // One second with its bytes reversed is 1 << 24.
  int count = 0;
  EXPECT_TRUE(wait_until([&] {
    return output_of([&] { EXPECT_EQ(wlan_getAssocDevicesNum(1, &count), 0); }) ==
           traced_table(kBoth[0], "16777216");
  }));
  driver_station_table table = {};
  const std::string output =
      output_of([&] { EXPECT_EQ(wlan_getAssocDevicesTable_2(1, &table), 0); });
  EXPECT_TRUE(output == traced_table(kBoth[1], "16777216") ||
              output == traced_table(kBoth[1], "33554432"))
      << output;
  EXPECT_EQ(logged(), "");
}

TEST(Stations, TraceOfATableThatLiesIsBounded) {
  start_radios("ra0");
  switch_console_on();
  gwbox("fail stations count=4294967295");
  driver_station_table table = {};
  const std::string output =
      output_of([&] { EXPECT_EQ(wlan_getAssocDevicesTable_2(1, &table), 0); });
  EXPECT_TRUE(contains(output, "p_deviceTable->Num = -1\n"));
  EXPECT_EQ(count_of(output, "RT_802_11_MAC_TABLE entry"), 128);
  EXPECT_EQ(table.count, 0xFFFFFFFFu) << "the table is passed on as it is";
}

TEST(Stations, NothingIsTracedWithoutTheSwitch) {
  start_radios("ra0");
  set_station(1, "bss=1");
  EXPECT_EQ(output_of([] { EXPECT_EQ(stations_of(1), 1); }), "");
}
