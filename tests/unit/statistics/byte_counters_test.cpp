#include "statistics/byte_counters.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "support/stations.h"
#include "unit_support.h"

static constexpr char kGetFailed[] = " get radio bytes send failed. \n ";

static void set_bytes(int bss, const std::string& received, const std::string& sent) {
  gwbox("set bss " + std::to_string(bss) + " ssid_rx_bytes=" + received + " ssid_tx_bytes=" + sent);
}

TEST(ByteCounters, AreAddedUpPerBss) {
  start_radios("ra0 ra1 ra7 ra8");
  set_bytes(1, "100", "7000");
  set_bytes(2, "4294967295", "20");
  set_bytes(8, "3", "4");
  set_bytes(9, "50", "60");
  EXPECT_EQ(wlan_getSSIDTxRxBytes(1), 0);
  EXPECT_EQ(mbss_stat_24g[0].received, 100u);
  EXPECT_EQ(mbss_stat_24g[0].sent, 7000u);
  EXPECT_EQ(mbss_stat_5g[0].received, 0u) << "the other radio was not asked";
  EXPECT_EQ(wlan_getSSIDTxRxBytes(9), 0);
  EXPECT_EQ(mbss_stat_5g[0].received, 50u);
  EXPECT_EQ(mbss_stat_5g[0].sent, 60u);
  set_bytes(2, "4294967294", "5");
  EXPECT_EQ(wlan_getSSIDTxRxBytes(1), 0);
  EXPECT_EQ(mbss_stat_24g[1].received, 8589934589u) << "beyond 32 bits";
  EXPECT_EQ(mbss_stat_24g[1].sent, 25u);
  EXPECT_EQ(mbss_stat_24g[0].received, 100u);
  EXPECT_EQ(mbss_stat_24g[7].received, 3u);
  EXPECT_EQ(mbss_stat_24g[7].sent, 4u);
}

TEST(ByteCounters, AreAskedForOnTheInterfaceOfTheRadio) {
  start_radios("ra8");
  EXPECT_EQ(wlan_getSSIDTxRxBytes(9), 0);
  const std::string line = driver_requests().back();
  EXPECT_TRUE(contains(line, R"("interface":"ra8")")) << line;
  EXPECT_TRUE(contains(line, R"("sub":"0x069A")")) << line;
  EXPECT_TRUE(contains(line, R"("length":771,)")) << line;
}

TEST(ByteCounters, OfABssAndOfARadioAreOneDirectionEach) {
  for (unsigned i = 0; i < 8; ++i) {
    mbss_stat_24g[i] = {1u << i, 1000u << i};
    mbss_stat_5g[i] = {10u, 1u << (8 + i)};
  }
  EXPECT_EQ(bss_bytes(1, &byte_counter::received), 1u);
  EXPECT_EQ(bss_bytes(8, &byte_counter::received), 128u);
  EXPECT_EQ(bss_bytes(3, &byte_counter::sent), 4000u);
  EXPECT_EQ(bss_bytes(9, &byte_counter::sent), 256u);
  EXPECT_EQ(bss_bytes(16, &byte_counter::sent), 32768u);
  EXPECT_EQ(radio_bytes(1, &byte_counter::received), 255u);
  EXPECT_EQ(radio_bytes(8, &byte_counter::sent), 255000u);
  EXPECT_EQ(radio_bytes(9, &byte_counter::received), 80u);
  EXPECT_EQ(radio_bytes(12, &byte_counter::sent), 65280u);
  for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(bss_bytes(bss, &byte_counter::sent), 0u) << bss;
    EXPECT_EQ(radio_bytes(bss, &byte_counter::sent), 0u) << bss;
  }
}

TEST(ByteCounters, FailureIsReportedAndAddsNothing) {
  start_radios("ra0");
  set_bytes(1, "100", "200");
  // EAGAIN counts as a failure here too.
  for (const char* error : {"EIO", "EAGAIN"}) {
    gwbox(std::string("fail ssid_traffic ") + error);
    const std::string errors = errors_of([] { EXPECT_EQ(wlan_getSSIDTxRxBytes(1), -1); });
    EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_ioctl_2") +
                          "ioctl failed (cmd=0x8BE1, sub_cmd=0x69A) \n" +
                          rev_error_prefix("wlan_getSSIDTxRxBytes") + kGetFailed);
  }
  EXPECT_EQ(mbss_stat_24g[0].received, 0u);
  EXPECT_EQ(wlan_getSSIDTxRxBytes(1), 0);
  EXPECT_EQ(mbss_stat_24g[0].received, 100u);
}

TEST(ByteCounters, IndexWithoutAnInterfaceFails) {
  for (const int radio : {0, 17, -5, INT_MIN, INT_MAX})
    errors_of([&] { EXPECT_EQ(wlan_getSSIDTxRxBytes(radio), -1) << radio; });
}

TEST(ByteCounters, CountsThatLieAreBounded) {
  start_radios("ra0 ra1 ra7");
  byte_counter before[8] = {};
  static constexpr struct {
    const char* said;
    unsigned added;
  } kCases[] = {{"8", 8},          {"9", 8},          {"2147483647", 8}, {"0", 0},
                {"4294967295", 0}, {"2147483648", 0}, {"1", 1}};
  for (const auto& c : kCases) {
    for (int i = 0; i < 8; ++i)
      before[i] = mbss_stat_24g[i];
    set_bytes(1, "11", "12");
    set_bytes(8, "81", "82");
    gwbox(std::string("fail ssid_traffic count=") + c.said);
    EXPECT_EQ(wlan_getSSIDTxRxBytes(1), 0);
    EXPECT_EQ(mbss_stat_24g[0].received - before[0].received, c.added >= 1 ? 11u : 0u) << c.said;
    EXPECT_EQ(mbss_stat_24g[7].sent - before[7].sent, c.added == 8 ? 82u : 0u) << c.said;
    // Clears counters that a false count has kept from being read.
    set_bytes(1, "0", "0");
    set_bytes(8, "0", "0");
  }
  EXPECT_EQ(mbss_stat_5g[0].received, 0u);
}

TEST(ByteCounters, ShortAnswerAddsWhatCame) {
  start_radios("ra0");
  set_bytes(1, "100", "200");
  gwbox("fail ssid_traffic short=16");
  EXPECT_EQ(wlan_getSSIDTxRxBytes(1), 0);
  EXPECT_EQ(mbss_stat_24g[0].received, 100u);
  EXPECT_EQ(mbss_stat_24g[0].sent, 0u);
}

TEST(ByteCounters, AreTracedOnTheConsole) {
  start_radios("ra0 ra1");
  switch_log_on();
  switch_console_on();
  EXPECT_EQ(output_of([] { EXPECT_EQ(wlan_getSSIDTxRxBytes(1), 0); }),
            rev_prefix("wlan_getSSIDTxRxBytes") + "Radio statistics SSID Num = 2\n");
  EXPECT_EQ(logged(), "");
}

TEST(StationStatistics, TableIsTheDriversByteByByte) {
  start_radios("ra8 ra9");
  set_station(1,
              "bss=10 tx_rate='VHT80 MCS9 NSS2 SGI' start.rx_bytes=67305985 "
              "start.tx_bytes=4293844428");
  driver_statistics_table table = {};
  EXPECT_EQ(wlan_getAssocDevicesStatistics(9, &table), 0);
  const std::string bytes(reinterpret_cast<const char*>(&table), sizeof table);
  const std::string expected(
      "\x01\x00\x00\x00"
      "\x01\x02\x00\x5e\x00\x01\x01\x04"  // ApIdx, MAC, PHY mode
      "\x00\x00\x00\x00\x00\x00\x00\x00"
      "\x01\x02\x03\x04\xcc\xdd\xee\xff",  // received, sent
      28);
  EXPECT_EQ(bytes.substr(0, 28), expected);
  const std::string line = driver_requests().back();
  EXPECT_TRUE(contains(line, R"("interface":"ra8")")) << line;
  EXPECT_TRUE(contains(line, R"("sub":"0x0695")")) << line;
  EXPECT_TRUE(contains(line, R"("length":6659,)")) << line;
}

TEST(StationStatistics, FailureAddsNoMessageOfItsOwn) {
  for (const int bss : {1, 0, 17, -5, INT_MIN, INT_MAX}) {
    driver_statistics_table table = {};
    const std::string errors =
        errors_of([&] { EXPECT_EQ(wlan_getAssocDevicesStatistics(bss, &table), -1); });
    EXPECT_EQ(errors,
              rpc_error_prefix("rtpriv_get_ioctl") + "ioctl failed (cmd=0x8BE1, sub_cmd=0x695)\n");
  }
}

TEST(StationStatistics, AreTracedOnTheConsole) {
  start_radios("ra0");
  set_station(0xAB, "bss=1 start.rx_bytes=3000000000 start.tx_bytes=5");
  switch_log_on();
  switch_console_on();
  const std::string prefix = rev_prefix("wlan_getAssocDevicesStatistics");
  EXPECT_EQ(output_of([] {
              driver_statistics_table table = {};
              EXPECT_EQ(wlan_getAssocDevicesStatistics(1, &table), 0);
            }),
            prefix + "STA statistics entry Num = 1\n" + prefix +
                "\nOID_802_11_STA_STATISTICS entry 0\n" + prefix +
                "ReceivedByteCount=3000000000, TransmittedByteCount=5\n" + prefix +
                "02:00:5E:00:01:AB\n\n");
  EXPECT_EQ(logged(), "");
}

TEST(StationStatistics, CountsThatLieAreBounded) {
  start_radios("ra0");
  switch_console_on();
  static constexpr struct {
    const char* said;
    const char* shown;
    int entries;
  } kCases[] = {{"4294967295", "-1", 0},
                {"2147483648", "-2147483648", 0},
                {"129", "129", 128},
                {"2147483647", "2147483647", 128},
                {"0", "0", 0}};
  for (const auto& c : kCases) {
    gwbox(std::string("fail station_traffic count=") + c.said);
    const std::string output = output_of([] {
      driver_statistics_table table = {};
      EXPECT_EQ(wlan_getAssocDevicesStatistics(1, &table), 0);
    });
    EXPECT_TRUE(contains(output, std::string("entry Num = ") + c.shown + "\n")) << output;
    EXPECT_EQ(count_of(output, "OID_802_11_STA_STATISTICS entry"), c.entries) << c.said;
  }
}
