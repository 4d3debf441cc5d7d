#include "show/record.h"

#include <gtest/gtest.h>

#include <cstring>

#include "show/json.h"
#include "wire/lookup.h"

static void put(std::string& record, size_t at, std::string_view bytes) {
  record.replace(at, bytes.size(), bytes);
}

static std::string shown(const char* procedure, const std::string& record, size_t width = 0) {
  return show_record(*payload_find(*lookup_name(procedure)), record, {width});
}

static std::string json_of(const char* procedure, const std::string& record) {
  decoded_reply reply{};
  reply.data = record;
  return json_reply(*lookup_name(procedure), reply);
}

static std::string stations_record() {
  std::string record(5124, '\0');
  put(record, 0, std::string("\2", 1));
  // BSS 2, AID 3, power save; -48 and -51 dBm, the other chains -127; 260 s; VHT 80 MHz,
  // two streams, MCS 9, short guard interval in both directions; 1000 packets sent, 2
  // failed.
  put(record, 4, std::string("\1\2\0\x5e\0\0\1\3\1\0\xd0\xcd\x81\x81", 14));
  put(record, 20, std::string("\4\1\0\0\x19\x83\0\0\x19\x83", 10));
  put(record, 36, std::string("\xe8\3\0\0\2", 5));
  put(record, 44 + 1, "\xff\xfe\xfd\xfc\xfb\xfa");
  return record;
}

TEST(Show, StationsAsATable) {
  EXPECT_EQ(shown("wlan_get_assoc_devices_table", stations_record()),
            "BSS STATION           AID PS RSSI dBm ASSOC s TX Mbit/s RX Mbit/s PACKETS FAILED\n"
            "  2 02:00:5e:00:00:01   3  1      -48     260     866.7     866.7    1000      2\n"
            "  1 ff:fe:fd:fc:fb:fa   0  0        -       0       1.0       1.0       0      0\n");
  EXPECT_EQ(shown("wlan_get_assoc_devices_table", stations_record(), 80),
            "BSS STATION           AID PS RSSI ASSOC     TX     RX PACKETS FAILED\n"
            "                              dBm     s Mbit/s Mbit/s         \n"
            "  2 02:00:5e:00:00:01   3  1  -48   260  866.7  866.7    1000      2\n"
            "  1 ff:fe:fd:fc:fb:fa   0  0    -     0    1.0    1.0       0      0\n")
      << "on a terminal";
  EXPECT_EQ(shown("wlan_get_assoc_devices_table", std::string(5124, '\0')), "no stations\n");
}

static std::string btm_record() {
  std::string record(2436, '\0');
  record[0] = 1;
  // 5 GHz VHT at 866 * 1024 kbit/s down, and up the lowest rate that the daemon reports.
  put(record, 4, std::string("\xc3\xff\xff\xff\x00\x88\x0d\x00\xe8\3", 10));
  put(record, 4 + 20, "\xff\xff\xff\xff");
  put(record, 4 + 28, std::string("\0\1", 2));
  put(record, 4 + 40, "02:00:5e:00:00:01");
  return record;
}

TEST(Show, RatesOfAllTablesAreInOneUnit) {
  EXPECT_EQ(shown("wlan_get_btm_associated_device", btm_record()),
            "STATION           RSSI dBm DOWN Mbit/s UP Mbit/s MCS     SENT B RECEIVED B BTM\n"
            "02:00:5e:00:00:01      -61         866         1   0 4294967295        256   -\n");
  EXPECT_NE(json_of("wlan_get_btm_associated_device", btm_record())
                .find(R"("downlink_rate":886784,"uplink_rate":1000,)"),
            std::string::npos);
}

TEST(Show, RatesOfBytesSaySo) {
  const payload_layout& layout = *payload_find(*lookup_name("wlan_get_btm_associated_device"));
  const std::string then = btm_record();
  const earlier_record earlier = {then, 2};
  EXPECT_EQ(show_record(layout, btm_record(), {80, 1, &earlier}),
            "STATION           RSSI   DOWN     UP MCS       SENT B/s RECEIVED B/s BTM\n"
            "                   dBm Mbit/s Mbit/s              B            B     \n"
            "02:00:5e:00:00:01  -61    866      1   0 4294967295 0.0      256 0.0   -\n");
}

TEST(Show, StationAsJson) {
  std::string record = stations_record();
  record[0] = 1;
  EXPECT_EQ(
      json_of("wlan_get_assoc_devices_table", record),
      R"({"procedure":"wlan_get_assoc_devices_table","number":221,"return_code":0,"value":{"stations":[)"
      R"({"bss_position":1,"mac_address":"02:00:5e:00:00:01","association_id":3,"power_save":1,)"
      R"("mimo_power_save":0,"rssi_0":-48,"rssi_1":-51,"rssi_2":null,"rssi_3":null,)"
      R"("connected_seconds":260,)"
      R"("tx_rate":{"mbit_s":866.7,"phy":"VHT","mhz":80,"streams":2,"mcs":9,"short_guard":true,"word":33561},)"
      R"("rx_rate":{"mbit_s":866.7,"phy":"VHT","mhz":80,"streams":2,"mcs":9,"short_guard":true,"word":33561},)"
      R"("packets_sent":1000,"failures":2}]}})"
      "\n");
}

// The driver counts from 0 within the radio; people count from 1 to 16, like the setters.
TEST(Show, BssesHaveTheNumbersThatProceduresTake) {
  const payload_layout& layout = *payload_find(*lookup_name("wlan_get_assoc_devices_table"));
  const std::string table = show_record(layout, stations_record(), {0, 9});
  EXPECT_NE(table.find("\n 10 02:00:5e:00:00:01 "), std::string::npos) << table;
  EXPECT_NE(table.find("\n  9 ff:fe:fd:fc:fb:fa "), std::string::npos) << table;
  const std::string lines = show_lines(layout, stations_record(), "NOW", {0, 9});
  EXPECT_TRUE(lines.starts_with("NOW bss=10 mac_address=02:00:5e:00:00:01 ")) << lines;
}

TEST(Show, LongTextsAreCutAtTheTerminalOnly) {
  std::string record(6764, '\0');
  put(record, 0, std::string("\1", 1));
  put(record, 4, std::string("\2\0\x5e\0\0\1\x0b\xb0", 8) + "A network with a rather long name");
  put(record, 45, "WPA1PSKWPA2PSK/TKIPAES");
  put(record, 68, "11b/g/n");
  const std::string whole = shown("wlan_get_ap_scan_result", record);
  EXPECT_NE(whole.find("02:00:5e:00:00:01 11      -80 A network with a rather long name "
                       "WPA1PSKWPA2PSK/TKIPAES 11b/g/n\n"),
            std::string::npos)
      << whole;
  const std::string cut = shown("wlan_get_ap_scan_result", record, 60);
  const size_t table = cut.find("BSSID");
  ASSERT_NE(table, std::string::npos);
  for (size_t at = table; at < cut.size(); at = cut.find('\n', at) + 1)
    EXPECT_LE(cut.find('\n', at) - at, 60u) << cut;
}

TEST(Show, TextsAndTimesAreSafeAndReadable) {
  std::string record(1156, '\0');
  put(record, 4, "02:00:5e:00:00:01");
  put(record, 24, std::string("\0\xf1\x53\x65", 4));  // 1700000000 = 0x6553f100
  put(record, 28, "\x1b[2J");
  put(record, 1152, std::string("\1", 1));
  EXPECT_EQ(shown("wlan_get_steer_event_report", record),
            "TIME                 TYPE STATION           CODE\n"
            "2023-11-14 22:13:20Z    0 02:00:5e:00:00:01 \\x1b[2J\n");
}

static std::string counters(uint32_t sent, uint32_t received) {
  std::string record(20, '\0');
  for (unsigned i = 0; i < 4; ++i) {
    record[i] = static_cast<char>(sent >> (8 * i));
    record[4 + i] = static_cast<char>(received >> (8 * i));
  }
  return record;
}

TEST(Show, CountersHaveTheirGrowthPerSecond) {
  const payload_layout& layout = *payload_find(*lookup_name("wlan_get_basic_stats"));
  const std::string then = counters(1000, 4000000000u);
  const earlier_record earlier = {then, 2};
  EXPECT_EQ(show_record(layout, counters(1051, 4000001000u), {0, 1, &earlier}),
            "bytes_sent       1051 B       25.5 B/s\n"
            "bytes_received   4000001000 B  500 B/s\n"
            "packets_sent     0               0.0/s\n"
            "packets_received 0               0.0/s\n"
            "associations     0            \n");
  EXPECT_EQ(show_lines(layout, counters(1051, 32704), "NOW", {0, 1, &earlier}),
            "NOW bytes_sent=1051 bytes_sent/s=25.5 bytes_received=32704 "
            "bytes_received/s=147500000 packets_sent=0 packets_sent/s=0.0 packets_received=0 "
            "packets_received/s=0.0 associations=0\n")
      << "on from 0 behind 32 bits";
  EXPECT_EQ(show_lines(layout, counters(999, 4000000000u), "NOW", {0, 1, &earlier}),
            "NOW bytes_sent=999 bytes_received=4000000000 bytes_received/s=0.0 packets_sent=0 "
            "packets_sent/s=0.0 packets_received=0 packets_received/s=0.0 associations=0\n")
      << "none where the counter has gone back";
}

TEST(Show, RowsHaveTheirOwnRates) {
  const payload_layout& layout = *payload_find(*lookup_name("wlan_get_assoc_devices_table"));
  const auto stations = [](const char* first, const char* second) {
    std::string record(5124, '\0');
    record[0] = 2;
    put(record, 4 + 1, "\2\2\2\2\2\1");
    put(record, 4 + 32, first);
    put(record, 44 + 1, "\2\2\2\2\2\2");
    put(record, 44 + 32, second);
    return record;
  };
  std::string then = stations("\x10", "\x20");
  then.replace(45, 6, "\2\2\2\2\2\3");  // the second station came later
  std::swap_ranges(then.begin() + 4, then.begin() + 44, then.begin() + 44);
  const earlier_record earlier = {then, 4};
  const std::string lines = show_lines(layout, stations("\x12", "\x21"), "NOW", {0, 1, &earlier});
  EXPECT_NE(lines.find(":01 association_id=0"), std::string::npos) << lines;
  EXPECT_NE(lines.find("packets_sent=18 packets_sent/s=0.5"), std::string::npos) << lines;
  EXPECT_NE(lines.find("packets_sent=33 failures=0\n"), std::string::npos) << lines;
  const std::string table = show_record(layout, stations("\x12", "\x21"), {0, 1, &earlier});
  EXPECT_NE(table.find("PACKETS  /s FAILED  /s\n"), std::string::npos) << table;
  EXPECT_NE(table.find("     18 0.5      0 0.0\n"), std::string::npos) << table;
}

TEST(Show, LinesKeepTheirFieldsApart) {
  std::string record(6764, '\0');
  record[0] = 1;
  put(record, 12, "a\" rssi=\"0\\\n");
  const std::string lines =
      show_lines(*payload_find(*lookup_name("wlan_get_ap_scan_result")), record, "NOW", {});
  EXPECT_NE(lines.find(" ssid=\"a\\x22 rssi=\\x220\\\\\\x0a\" security="), std::string::npos)
      << lines;
  EXPECT_EQ(show_lines(*payload_find(*lookup_name("wlan_get_assoc_devices_table")),
                       std::string(5124, '\0'), "NOW", {}),
            "NOW no stations\n");
}

TEST(Show, FlagsAndMissingTimes) {
  const std::string out = shown("wlan_get_na_sta_report", std::string(900, '\0'));
  EXPECT_EQ(out, "valid       no\nrssi        -\ntime        -\nmac_address \n");
}
