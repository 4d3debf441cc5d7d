#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <regex>
#include <string>

#include "lying_driver.h"
#include "rpc/handlers.h"
#include "rpc/wire_support.h"
#include "support/gateway.h"
#include "support/stations.h"
#include "sys/board.h"
#include "unit_support.h"

static constexpr char kHandler[] = "wlan_get_btm_associated_device_1_svc";

// Makes the daemon see the dual-band chip.
static void make_mt7615() {
  mount_tmpfs("/proc/bus/pci", "size=64k");
  write_file("/proc/bus/pci/devices", "0100\t14c37615\t4\tdriver\n");
}

// A reply, split at the offsets that clients know.
struct btm_reply {
  int code = 99;
  std::string image;
};

static btm_reply list_of(int bss) {
  wlan_config_result_data_t result = {};
  btm_reply reply;
  EXPECT_EQ(wlan_get_btm_associated_device_1_svc(bss, &result, nullptr), 1);
  EXPECT_EQ(result.return_words.return_words_len, 0u);
  reply.code = result.return_code;
  reply.image.assign(result.return_data.return_data_val, result.return_data.return_data_len);
  released(xdr_wlan_config_result_data_t, &result);
  EXPECT_EQ(reply.image.size(), 2436u);
  return reply;
}

static int number_at(const std::string& bytes, size_t at) {
  int value = 0;
  memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

static int count_in(const btm_reply& reply) {
  return number_at(reply.image, 0);
}

static std::string station_of(const btm_reply& reply, size_t n) {
  return reply.image.substr(4 + 76 * n, 76);
}

static std::string mac_of(const btm_reply& reply, size_t n) {
  return station_of(reply, n).substr(40, 17);
}

static constexpr char kFullStation[] =
    "bss=2 rssi=[-48,-51,-47,-90] tx_rate='HT20 MCS15 SGI' rx_rate='VHT80 MCS7 NSS2' btm=true "
    "start.rx_bytes=67305985 start.tx_bytes=4293844428";

TEST(BtmList, RecordHasItsFieldsAtTheirOffsets) {
  start_radios("ra0 ra1");
  set_station(0xAB, kFullStation);
  const btm_reply reply = list_of(2);
  EXPECT_EQ(reply.code, 0);
  EXPECT_EQ(reply.image.substr(0, 4), std::string("\1\0\0\0", 4));
  const std::string expected(
      "\xd1\xff\xff\xff"                  // -47
      "\x00\x40\x02\x00\x00\x40\x02\x00"  // 144 Mbit/s: 2 x 72. The receive rate is unknown, so the
                                          // same
      "\x07\x00\x00\x00\x07\x00\x00\x00"
      "\xcc\xdd\xee\xff\x00\x00\x00\x00"  // bytes sent
      "\x01\x02\x03\x04\x00\x00\x00\x00"  // bytes received
      "\x00\x00\x00\x00"
      "02:00:5e:00:01:ab"
      "\x00\x00\x00"
      "\x00\x00\x00\x00\x00\x00\x00\x00"
      "\x01\x00\x00\x00\x00\x00\x00\x00",
      76);
  EXPECT_EQ(station_of(reply, 0), expected);
  EXPECT_EQ(reply.image.substr(80), std::string(2436 - 80, '\0'));
}

TEST(BtmList, DualBandChipTellsReceiveRateAndCapability) {
  make_mt7615();
  start_radios("ra0 ra1");
  set_station(0xAB, kFullStation);
  const btm_reply reply = list_of(2);
  EXPECT_EQ(reply.code, 0);
  const std::string station = station_of(reply, 0);
  EXPECT_EQ(number_at(station, 4), 144 * 1024);
  EXPECT_EQ(number_at(station, 8), 585 * 1024);  // VHT80 MCS 7, two streams
  EXPECT_EQ(number_at(station, 12), 7);
  EXPECT_EQ(number_at(station, 16), 7);
  EXPECT_EQ(station[59], 8);
  const std::string line = driver_requests().back();
  EXPECT_TRUE(contains(line, R"("interface":"ra1")")) << line;
  EXPECT_TRUE(contains(line, R"("sub":"0x494A")")) << line;
  EXPECT_TRUE(contains(line, R"("length":9,)")) << line;
  EXPECT_TRUE(contains(line, R"("mac":"02:00:5e:00:01:ab")")) << line;
}

TEST(BtmList, DualBandChipsRatesAreNormalised) {
  make_mt7615();
  start_radios("ra0");
  // OFDM 54 sent, CCK 5.5 with short preamble received.
  set_station(1, "bss=1 tx_rate=0x200C rx_rate=0x0006 btm=false");
  const std::string station = station_of(list_of(1), 0);
  EXPECT_EQ(number_at(station, 4), 54 * 1024);
  EXPECT_EQ(number_at(station, 12), 7);
  EXPECT_EQ(number_at(station, 8), 5 * 1024);
  EXPECT_EQ(number_at(station, 16), 2);
  EXPECT_EQ(station[59], 0);
  EXPECT_EQ(number_at(station, 68), 0);
}

TEST(BtmList, StrongestChainIsTheRssi) {
  start_radios("ra0");
  static constexpr struct {
    const char* chains;
    int strongest;
  } kCases[] = {
      {"-50,-40,-60,-45", -40},
      {"-126,-127,0,-127", -126},
      {"0,-127,0,-127", -127},
      {"0,-80,-80,0", -80},
      {"-1,-2,-3,-4", -1},
      {"-127,-127,-127,-70", -70},
      {"-55", -55},
  };
  for (const auto& c : kCases) {
    set_station(1, std::string("bss=1 rssi=[") + c.chains + "]");
    EXPECT_EQ(number_at(station_of(list_of(1), 0), 0), c.strongest) << c.chains;
  }
}

TEST(BtmList, NoChainIsAboveZeroOrBelowTheLowest) {
  start_radios("ra0");
  static constexpr struct {
    int8_t chains[4];
    int strongest;
  } kCases[] = {{{5, -60, 0, 0}, -60}, {{-60, 127, 1, -128}, -60}, {{1, 2, 3, 4}, -127}};
  for (const auto& c : kCases) {
    std::string entry(40, '\0');
    memcpy(entry.data() + 10, c.chains, sizeof c.chains);
    answer_stations_with(std::string("\1\0\0\0", 4) + entry);
    const btm_reply reply = list_of(1);
    EXPECT_EQ(count_in(reply), 1);
    EXPECT_EQ(number_at(station_of(reply, 0), 0), c.strongest) << +c.chains[0];
  }
}

TEST(BtmList, PhyModeSaysHtAndVht) {
  start_radios("ra0");
  static constexpr struct {
    const char* rate;
    int is_ht, is_vht;
  } kCases[] = {{"'CCK 11'", 0, 0}, {"'OFDM 54'", 0, 0},         {"'HT40 MCS7'", 1, 0},
                {"0x6007", 1, 0},   {"'VHT20 MCS0 NSS1'", 1, 1}, {"0xA000", 1, 0}};
  for (const auto& c : kCases) {
    set_station(1, std::string("bss=1 tx_rate=") + c.rate);
    const std::string station = station_of(list_of(1), 0);
    EXPECT_EQ(number_at(station, 68), c.is_ht) << c.rate;
    EXPECT_EQ(number_at(station, 72), c.is_vht) << c.rate;
  }
}

TEST(BtmList, OnlyStationsOfTheBssAreListedInTheirOrder) {
  start_radios("ra0 ra1 ra8 ra9");
  set_station(1, "bss=1");
  set_station(2, "bss=2");
  set_station(3, "bss=1");
  set_station(4, "bss=10");
  btm_reply reply = list_of(1);
  EXPECT_EQ(count_in(reply), 2);
  EXPECT_EQ(mac_of(reply, 0), station_mac(1));
  EXPECT_EQ(mac_of(reply, 1), station_mac(3));
  reply = list_of(10);
  EXPECT_EQ(count_in(reply), 1);
  EXPECT_EQ(mac_of(reply, 0), station_mac(4));
  EXPECT_EQ(count_in(list_of(9)), 0);
  EXPECT_EQ(count_in(list_of(3)), 0);
}

TEST(BtmList, HoldsThirtyTwoStations) {
  start_radios("ra0 ra1");
  set_station(0xFF, "bss=2");
  set_stations(34, 1);
  const btm_reply reply = list_of(1);
  EXPECT_EQ(reply.code, 0);
  EXPECT_EQ(count_in(reply), 32);
  EXPECT_EQ(mac_of(reply, 31), station_mac(32));
  EXPECT_EQ(count_in(list_of(2)), 1);
}

TEST(BtmList, BackhaulIsSaidOfABackhaulBssButNotOfARadiosFirst) {
  start_radios("ra0 ra1 ra8 ra9");
  for (const char* profile : {kProfile24, kProfile5})
    set_profile_value(profile, "BSSHNCService", "7;7;7;7;7;7;7;7");
  static constexpr int kBsss[] = {1, 2, 9, 10};
  for (const int bss : kBsss)
    set_station(bss, "bss=" + std::to_string(bss));
  for (const int bss : kBsss) {
    const int expected = bss == 1 || bss == 9 ? 0 : 1;
    EXPECT_EQ(number_at(station_of(list_of(bss), 0), 36), expected) << bss;
  }
  set_profile_value(kProfile24, "BSSHNCService", "7;6;7;7;7;7;7;7");
  EXPECT_EQ(number_at(station_of(list_of(2), 0), 36), 0);
}

TEST(BtmList, StationWithoutStatisticsHasZeros) {
  start_radios("ra0");
  set_station(1, "bss=1 rssi=[-50] tx_rate='HT20 MCS7' start.tx_bytes=77");
  gwbox("fail station_traffic count=0");
  const btm_reply reply = list_of(1);
  EXPECT_EQ(reply.code, 0);
  EXPECT_EQ(count_in(reply), 1);
  const std::string station = station_of(reply, 0);
  EXPECT_EQ(station.substr(20, 16), std::string(16, '\0'));
  EXPECT_EQ(station.substr(68), std::string(8, '\0'));
  EXPECT_EQ(number_at(station, 4), 65 * 1024);
  EXPECT_EQ(mac_of(reply, 0), station_mac(1));
}

// One station's statistics: the bytes sent, and VHT as its mode.
static std::string statistics_of(int n, char sent) {
  std::string entry(52, '\0');
  entry.replace(1, 6, std::string("\x02\x00\x5e\x00\x01", 5) + static_cast<char>(n));
  entry[7] = 4;
  entry[20] = sent;
  return entry;
}

TEST(BtmList, FirstStatisticsOfAStationCount) {
  start_radios("ra0");
  set_station(2, "bss=1");
  answer_object_with(0x0695, std::string("\3\0\0\0", 4) + statistics_of(1, 11) +
                                 statistics_of(2, 22) + statistics_of(2, 33));
  EXPECT_EQ(number_at(station_of(list_of(1), 0), 20), 22);
}

TEST(BtmList, CapabilityIsTimesEightInOneByte) {
  make_mt7615();
  start_radios("ra0");
  set_station(1, "bss=1");
  const struct {
    char capability;
    int flags;
  } rows[] = {{0, 0}, {1, 8}, {3, 24}, {31, 248}, {33, 8}};
  for (const auto& row : rows) {
    answer_object_with(0x494A, std::string("\4", 1) + row.capability);
    EXPECT_EQ(static_cast<unsigned char>(station_of(list_of(1), 0)[59]), row.flags);
  }
}

TEST(BtmList, NoCapabilityIsAskedOfStationsBehindTheThirtySecond) {
  make_mt7615();
  start_radios("ra0");
  set_stations(34, 1);
  EXPECT_EQ(count_in(list_of(1)), 32);
  int asked = 0;
  for (const std::string& request : driver_requests()) {
    asked += contains(request, R"("sub":"0x494A")");
  }
  EXPECT_EQ(asked, 32);
}

TEST(BtmList, CountsThatLieAreBounded) {
  start_radios("ra0 ra1");
  set_station(1, "bss=2 start.tx_bytes=77");
  set_station(2, "bss=2 start.tx_bytes=78");
  for (const char* count : {"129", "4294967295"}) {
    gwbox(std::string("fail stations count=") + count);
    EXPECT_EQ(count_in(list_of(2)), 2) << count;
    // Unwritten entries are zeros, which count as stations of BSS 1.
    gwbox(std::string("fail stations count=") + count);
    EXPECT_EQ(count_in(list_of(1)), 32) << count;
  }
  gwbox("fail stations count=1");
  EXPECT_EQ(count_in(list_of(2)), 1);
  static constexpr struct {
    const char* said;
    int sent;
  } kCases[] = {{"4294967295", 0}, {"2147483648", 0}, {"1", 0}, {"129", 78}, {"2147483647", 78}};
  for (const auto& c : kCases) {
    gwbox(std::string("fail station_traffic count=") + c.said);
    EXPECT_EQ(number_at(station_of(list_of(2), 1), 20), c.sent) << c.said;
  }
}

// Checks the handler's message on standard error, and that the reply has nothing but the
// code.
static void expect_failure(int bss, int code, const std::string& message) {
  const std::string errors = errors_of([&] {
    const btm_reply reply = list_of(bss);
    EXPECT_EQ(reply.code, code) << bss;
    EXPECT_EQ(reply.image, std::string(2436, '\0')) << bss;
  });
  EXPECT_TRUE(errors.ends_with(rpc_error_prefix(kHandler) + message)) << bss << errors;
}

TEST(BtmList, FailureOfTheStationTableFails) {
  for (const int bss : {1, 0, 17, -5, INT_MIN, INT_MAX})
    expect_failure(bss, -1, "can't get associated device list.\n");
}

TEST(BtmList, FailureOfTheStatisticsFails) {
  start_radios("ra0");
  set_station(1, "bss=1");
  gwbox("fail station_traffic EIO");
  expect_failure(1, -1, "can't get associated device statistics.\n");
}

TEST(BtmList, UnknownServiceIsAnEmptyListAndNoFailure) {
  start_radios("ra0");
  set_station(1, "bss=1");
  write_file(kProfile24, "Default\n");
  expect_failure(1, 0, "can't get BSS HNC Service.\n");
}

TEST(BtmList, CapabilityThatIsNotToldBreaksTheListOff) {
  make_mt7615();
  start_radios("ra0");
  for (int n = 1; n <= 3; ++n)
    set_station(n, "bss=1 btm=true");
  gwbox("fail btm delay=1");  // answers the first one correctly, so that the second fails
  gwbox("fail btm EIO");
  switch_log_on();
  const std::string errors = errors_of([] {
    const btm_reply reply = list_of(1);
    EXPECT_EQ(reply.code, -1);
    EXPECT_EQ(count_in(reply), 0);
    EXPECT_EQ(mac_of(reply, 0), station_mac(1));
    EXPECT_EQ(station_of(reply, 0)[59], 8);
    EXPECT_EQ(mac_of(reply, 1), station_mac(2));
    EXPECT_EQ(station_of(reply, 1)[59], 0);
    EXPECT_EQ(station_of(reply, 2), std::string(76, '\0'));
  });
  EXPECT_EQ(errors, rpc_error_prefix("rtpriv_get_ioctl") +
                        "ioctl failed (cmd=0x8BE1, sub_cmd=0x494A)\n" + rpc_error_prefix(kHandler) +
                        "query STA 02:00:5e:00:01:02 btm capability failed. \n ");
  // The first station is logged, the second is not, and no total follows.
  const std::string log = read_file("/tmp/auto_debug/dbg_rpc.log");
  EXPECT_EQ(count_of(log, "STA 02:00:5e:00:01:01 rssi="), 1) << log;
  EXPECT_FALSE(contains(log, "STA 02:00:5e:00:01:02 rssi=")) << log;
  EXPECT_FALSE(contains(log, "total assoc STA num")) << log;
  EXPECT_TRUE(contains(log, "return_data_len = 2436 \n")) << log;
}

TEST(BtmList, ShortCapabilityIsNotThePreviousStations) {
  make_mt7615();
  start_radios("ra0");
  set_station(1, "bss=1 btm=true");
  set_station(2, "bss=1 btm=true");
  gwbox("fail btm delay=1");
  gwbox("fail btm short=1");
  const btm_reply reply = list_of(1);
  EXPECT_EQ(station_of(reply, 0)[59], 8);
  EXPECT_EQ(station_of(reply, 1)[59], 0);
}

TEST(BtmList, IsTraced) {
  start_radios("ra0 ra1");
  set_station(0xAB, kFullStation);
  EXPECT_EQ(hasMTK7615(), 0);  // logs this once now, and not in the list below
  switch_log_on();
  EXPECT_EQ(list_of(2).code, 0);
  const std::string expected =
      " WLAN RPC server : [index 2]\n"
      "STA 02:00:5e:00:01:ab: Rssi0 = -48, Rssi1 = -51, Rssi2 = -47, Rssi3 = -90, Max Rssi = -47 "
      "\n "
      "STA 02:00:5e:00:01:ab rssi=-47, downlink_rate=147456, uplink_rate=147456, tx_mcs=7, "
      "rx_mcs=7, bytes_sent=4293844428, bytes_rcv=67305985, backhaul_sta=0 is_ht = 1 is_vht = 0 \n"
      "total assoc STA num on SSID [2] is 1\n"
      " WLAN RPC server : result->return_data.return_data_len = 2436 \n";
  // A time stamp also follows the blank after a line end.
  static const std::regex kStamp("[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9:]+ [0-9]{4} - ");
  const std::string log = std::regex_replace(read_file("/tmp/auto_debug/dbg_rpc.log"), kStamp, "");
  EXPECT_EQ(log, expected);
}

TEST(BtmList, CapabilityIsTracedUnderTheHandlersName) {
  make_mt7615();
  start_radios("ra0");
  set_station(1, "bss=1 rssi=[-50] btm=true");
  switch_console_on();
  std::string output = output_of([] { EXPECT_EQ(list_of(1).code, 0); });
  EXPECT_TRUE(contains(output, rpc_prefix(kHandler) + "STA 02:00:5e:00:01:01 capability = 1. \n "))
      << output;
  EXPECT_EQ(count_of(output, rpc_prefix(kHandler)), 6) << output;
}
