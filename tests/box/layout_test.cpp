// The driver's records, compared with bytes written by hand.
#include <gtest/gtest.h>
#include <cerrno>
#include <cstring>

#include "model.h"

static std::string bytes(std::initializer_list<int> list) {
  std::string text;
  for (int byte : list)
    text += static_cast<char>(byte);
  return text;
}

TEST(Layout, StationEntry) {
  driver_state state;
  start_model(state, R"({"stations": [{"mac": "02:00:5e:a1:b2:c3", "bss": 11, "asleep": true,
    "rssi": [-40, -41, -42, -43], "tx_rate": "VHT80 MCS9 NSS2 SGI", "rx_rate": "HT40 MCS15",
    "start": {"tx_packets": 66051, "tx_failures": 258}}]})");
  answer table = stations(state, 8, 513 * kSecond);
  EXPECT_EQ(
      table.bytes.substr(0, 44),
      bytes({1,    0,    0,    0,                       // one entry
             2,    0x02, 0x00, 0x5e, 0xa1, 0xb2, 0xc3,  // third BSS of its radio, and the address
             1,    1,    0,                             // id, power save, MIMO power save
             0xD8, 0xD7, 0xD6, 0xD5, 0,    0,           // signal on four chains
             1,    2,    0,    0,                       // connected for 0x201 seconds
             0x19, 0x83, 0,    0,                       // mode 4, short guard, 80 MHz, 2 streams, 9
             0x8F, 0x40, 0,    0,    0,    0,    0,    0,  // mode 2, 40 MHz, 15
             3,    2,    1,    0,    2,    1,    0,    0}));
}

TEST(Layout, TrafficEntry) {
  driver_state state;
  start_model(state, R"({"stations": [{"mac": "02:00:5e:a1:b2:c3", "bss": 2,
    "tx_rate": "OFDM 54", "start": {"rx_bytes": 67305985, "tx_bytes": 134678021}}]})");
  answer table = query(state, 0, 0x0695, 6659);
  EXPECT_EQ(table.bytes.size(), 6659u);
  EXPECT_EQ(table.bytes.substr(0, 28),
            bytes({1, 0, 0, 0, 1, 0x02, 0x00, 0x5e, 0xa1, 0xb2, 0xc3, 1,  // OFDM
                   0, 0, 0, 0, 0, 0,    0,    0,    1,    2,    3,    4, 5, 6, 7, 8}));
}

TEST(Layout, RateWords) {
  auto word =
      [](const char* rate, const char* board) {
        driver_state state;
        start_model(state, std::string(R"({"stations": [{"mac": "02:00:5e:00:00:01", "bss": 1,
      "tx_rate": ")") + rate + "\"}]}",
                    board);
        return stations(state, 0).u16(4 + 20);
      };
  EXPECT_EQ(word("CCK 1", "mt7603"), 0x0000);
  EXPECT_EQ(word("CCK 11", "mt7603"), 0x0003);
  EXPECT_EQ(word("OFDM 6", "mt7603"), 0x2000);
  EXPECT_EQ(word("OFDM 54", "mt7603"), 0x2007);
  EXPECT_EQ(word("OFDM 6", "mt7615"), 0x200B);
  EXPECT_EQ(word("OFDM 54", "mt7615"), 0x200C);
  EXPECT_EQ(word("HT20 MCS0", "mt7603"), 0x4000);
  EXPECT_EQ(word("HT40 MCS7 SGI", "mt7603"), 0x4287);
  EXPECT_EQ(word("VHT160 MCS0 NSS4", "mt7603"), 0x81B0);
  EXPECT_EQ(word("0xABCD", "mt7603"), 0xABCD);
}

TEST(Layout, PowerLimitsOfBothChips) {
  const char* limits = R"({"radios": {"ra8": {"power": [{"channel": 36, "dbm": 20},
    {"channel": 40, "dbm": 23}, {"channel": 149, "dbm": 17}]}}})";
  driver_state state;
  start_model(state, limits);
  answer small = query(state, 8, 0x0AA2, 591);
  EXPECT_EQ(small.bytes.size(), 591u);
  EXPECT_EQ(small.u32(0), 3u);
  EXPECT_EQ(small.bytes.substr(4, 10), bytes({36, 0, 0, 0, 20, 0, 0, 0, 0, 0}));
  EXPECT_EQ(small.u8(4 + 20), 149);
  EXPECT_EQ(small.u8(4 + 24), 17);
  driver_state other;
  start_model(other, limits, "mt7615");
  answer large = query(other, 8, 0x0AA2, 947);
  EXPECT_EQ(large.bytes.size(), 947u);
  EXPECT_EQ(large.u32(0), 3u);
  EXPECT_EQ(large.bytes.substr(6, 5), bytes({36, 0, 0, 0, 20}));
  EXPECT_EQ(large.u8(6 + 16), 40);
  EXPECT_EQ(large.u8(6 + 32 + 4), 17);
  EXPECT_EQ(query(other, 8, 0x0AA2, 6 + 3 * 16 - 1).status, -EMSGSIZE);
}

TEST(Layout, SurveyEntry) {
  driver_state state;
  start_model(state, R"({"radios": {"ra0": {"survey_seconds": 0}}, "neighbours": [
    {"bssid": "02:00:5e:10:20:30", "radio": "ra0", "channel": 13, "rssi": -70, "ssid": "Loft",
     "security": "OPEN/NONE", "mode": "11b/g/n"}]})");
  EXPECT_EQ(set_key(state, 0, "SiteSurvey=1"), 0);
  answer result = query(state, 0, 0x069B, 13163);
  EXPECT_EQ(result.bytes.substr(0, 17), bytes({1, 0, 0, 0, 0x02, 0x00, 0x5e, 0x10, 0x20, 0x30, 13,
                                               0xBA, 'L', 'o', 'f', 't', 0}));
  EXPECT_STREQ(result.bytes.c_str() + 4 + 41, "OPEN/NONE");
  EXPECT_STREQ(result.bytes.c_str() + 4 + 64, "11b/g/n");
  EXPECT_EQ(result.u8(104), 0);
  EXPECT_EQ(result.u8(12804 + 13), 1);  // one network on channel 13
}

TEST(Layout, NonAssociatedReport) {
  driver_state state;
  start_model(state, R"({"nonassoc": [
    {"mac": "02:00:5e:20:00:01", "radio": "ra8", "observations": [
      {"rssi": -61, "time": "2026-03-01 18:30:01"}, {"rssi": -62, "time": "2026-03-01 18:30:02"},
      {"rssi": -63, "time": "2026-03-01 18:30:03"}, {"rssi": -64, "time": "2026-03-01 18:30:04"},
      {"rssi": -65, "time": "2026-03-01 18:30:05"}, {"rssi": -66, "time": "2026-12-31 23:59:58"}]},
    {"mac": "02:00:5e:20:00:02", "radio": "ra8", "newest": 0, "observations": []}]})");
  EXPECT_EQ(query(state, 8, 0x06B5, 1923).u8(1920), 0);  // switched off
  EXPECT_EQ(carry(state, 8, 0x86B4, "\1").status, 0);
  answer report = query(state, 8, 0x06B5, 1923);
  EXPECT_EQ(report.bytes.size(), 1923u);
  EXPECT_EQ(report.u8(1920), 2);
  EXPECT_EQ(report.bytes.substr(0, 8), mac_bytes("02:00:5e:20:00:01") + "\4\2");
  // A ring: the fifth and sixth probes have replaced the first and second.
  EXPECT_EQ(report.bytes.substr(8 + 28, 12), bytes({0xBE, 0, 0, 0, 0xEA, 7, 0, 0, 12, 0, 0, 0}));
  EXPECT_EQ(report.u32(8 + 28 + 12), 31u);
  EXPECT_EQ(report.u32(8 + 28 + 16), 23u);
  EXPECT_EQ(report.u32(8 + 28 + 24), 58u);
  EXPECT_EQ(report.s8(8), -65);
  EXPECT_EQ(report.s8(8 + 56), -63);
  EXPECT_EQ(report.u8(120 + 7), 0);
  EXPECT_EQ(query(state, 8, 0x06B5, 1920).status, -EMSGSIZE);
  // The short form of the query names a station to watch and announces six bytes.
  EXPECT_EQ(carry(state, 8, 0x06B5, mac_bytes("02:00:5e:20:00:07")).status, 0);
  ASSERT_EQ(state.radios[1].watched.size(), 1u);
  EXPECT_EQ(mac_text(state.radios[1].watched[0]), "02:00:5e:20:00:07");
  EXPECT_EQ(carry(state, 8, 0x06B5, "12345").status, -EMSGSIZE);
}

TEST(Layout, CountersMayBeAskedForWithAByteLess) {
  driver_state state;
  start_model(state, R"({"bss": [{"bss": 1,
    "counters": [16909060,2,3,4,5,6,7,8,9,10,11,12,13,66051]}]})");
  answer counters = query(state, 0, 0x067D, 55);
  EXPECT_EQ(counters.bytes.size(), 55u);
  EXPECT_EQ(counters.bytes.substr(0, 8), bytes({4, 3, 2, 1, 2, 0, 0, 0}));
  EXPECT_EQ(counters.bytes.substr(52), bytes({3, 2, 1}));
  EXPECT_EQ(query(state, 0, 0x067D, 54).status, -EMSGSIZE);
}

TEST(Layout, Uuid) {
  driver_state state;
  start_model(state, "{}");
  answer uuid = query(state, 8, 0x0753, 120);
  EXPECT_EQ(strlen(uuid.bytes.c_str()), 36u);
  EXPECT_EQ(uuid.bytes.size(), 120u);
  EXPECT_NE(query(state, 0, 0x0753, 120).bytes, uuid.bytes);
  EXPECT_EQ(query(state, 0, 0x0753, 36).status, -EMSGSIZE);
}
