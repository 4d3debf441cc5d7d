#include <gtest/gtest.h>

#include <cstring>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/stations.h"
#include "support/wire.h"

static constexpr uint32_t kGetBasicStats = 56;
static constexpr uint32_t kGetStats = 57;
static constexpr uint32_t kGetAssocDevicesNum = 58;
static constexpr uint32_t kGetAssocDevicesTable = 221;
static constexpr uint32_t kGetBtmAssociatedDevice = 293;
static constexpr uint32_t kGetRadioBytesSent = 295;
static constexpr uint32_t kGetRadioBytesReceived = 296;
static constexpr uint32_t kGetSsidBytesSent = 297;
static constexpr uint32_t kGetSsidBytesReceived = 298;

// The payload of a successful call.
static std::string answer(uint32_t procedure, const std::string& arguments) {
  reply_message reply = {};
  EXPECT_TRUE(call(procedure, arguments, &reply)) << procedure;
  EXPECT_EQ(reply.accept_status, kAcceptSuccess) << procedure;
  return reply.payload;
}

// Word `n` of a record whose status is 0.
static uint32_t record_word(uint32_t procedure, const std::string& arguments, size_t n) {
  const std::string payload = answer(procedure, arguments);
  EXPECT_EQ(word_at(payload, 0), 0u) << procedure;
  return word_at(payload, 8 + 4 * n);
}

static uint32_t stations_of(uint32_t bss) {
  return record_word(kGetAssocDevicesNum, xdr_word(bss), 0);
}

// A record's image, without its status, empty words and length.
static std::string image(uint32_t procedure, uint32_t bss) {
  const std::string payload = answer(procedure, xdr_word(bss));
  EXPECT_EQ(payload.substr(0, 8), std::string(8, '\0')) << procedure;
  return payload.substr(12);
}

// The addresses in the list of stations, one per line.
static std::string listed(uint32_t bss) {
  const std::string list = image(kGetBtmAssociatedDevice, bss);
  EXPECT_EQ(list.size(), 2436u);
  std::string macs;
  for (size_t n = 0; n < static_cast<unsigned char>(list[0]); ++n)
    macs += list.substr(4 + 76 * n + 40, 17) + "\n";
  return macs;
}

TEST(Stations, AppearMoveAndLeaveBetweenCalls) {
  start_radios("ra0 ra1 ra8 ra9");
  start_daemon();
  EXPECT_EQ(stations_of(1), 0u);
  EXPECT_EQ(listed(1), "");
  set_station(1, "bss=1 rssi=[-40]");
  set_station(2, "bss=1 rssi=[-50]");
  EXPECT_EQ(stations_of(1), 2u);
  EXPECT_EQ(listed(1), station_mac(1) + "\n" + station_mac(2) + "\n");
  set_station(1, "bss=2");
  EXPECT_EQ(stations_of(1), 1u);
  EXPECT_EQ(stations_of(2), 1u);
  EXPECT_EQ(listed(1), station_mac(2) + "\n");
  EXPECT_EQ(listed(2), station_mac(1) + "\n");
  set_station(1, "bss=10");
  EXPECT_EQ(listed(2), "");
  EXPECT_EQ(listed(10), station_mac(1) + "\n");
  EXPECT_EQ(stations_of(10), 1u);
  EXPECT_EQ(stations_of(9), 0u);
  remove_station(1);
  remove_station(2);
  EXPECT_EQ(listed(10), "");
  EXPECT_EQ(stations_of(1), 0u);
}

TEST(Stations, TableIsTheDriversAsItIs) {
  start_radios("ra0 ra1");
  start_daemon();
  set_station(1, "bss=2 rssi=[-48,-51]");
  const std::string table = image(kGetAssocDevicesTable, 1);
  EXPECT_EQ(table.size(), 5124u);
  EXPECT_EQ(table.substr(0, 16), std::string("\1\0\0\0\1\2\0\x5e\0\1\1\1\0\0\xd0\xcd", 16));
  EXPECT_EQ(table.substr(44), std::string(5124 - 44, '\0'));
}

TEST(Stations, FullRadioIsAnsweredWhole) {
  start_radios("ra0");
  start_daemon();
  set_stations(129, 1);
  EXPECT_EQ(stations_of(1), 128u) << "the driver takes no more";
  EXPECT_EQ(record_word(kGetBasicStats, xdr_word(1), 4), 128u);
  const std::string table = image(kGetAssocDevicesTable, 1);
  EXPECT_EQ(table.substr(0, 4), std::string("\x80\0\0\0", 4));
  EXPECT_EQ(table.substr(4 + 127 * 40, 8), std::string("\0\2\0\x5e\0\1\x80\x80", 8));
  const std::string list = image(kGetBtmAssociatedDevice, 1);
  EXPECT_EQ(list[0], 32);
  EXPECT_EQ(list.substr(4 + 76 * 31 + 40, 17), station_mac(32));
}

TEST(Stations, RadioThatIsDownFails) {
  start_daemon();
  for (const uint32_t procedure :
       {kGetAssocDevicesNum, kGetAssocDevicesTable, kGetBtmAssociatedDevice, kGetSsidBytesSent}) {
    EXPECT_EQ(call_for_code(procedure, xdr_word(1)), -1) << procedure;
    EXPECT_EQ(call_for_code(procedure, xdr_word(0)), -1) << procedure;
    EXPECT_EQ(call_for_code(procedure, xdr_word(0x80000000)), -1) << procedure;
  }
  EXPECT_EQ(call_for_code(kGetBasicStats, xdr_word(1)), 0);
  EXPECT_EQ(call_for_code(kGetStats, xdr_word(1) + xdr_word(0)), 0);
  EXPECT_EQ(call_for_code(kGetStats, xdr_word(17) + xdr_word(1)), -1);
  EXPECT_EQ(call_for_code(kGetStats, xdr_word(1) + xdr_word(2)), -1);
}

TEST(Stations, DriverThatAnswersLateIsWaitedFor) {
  start_radios("ra0");
  start_daemon();
  set_station(1, "bss=1");
  gwbox("fail stations delay=300");
  EXPECT_EQ(stations_of(1), 1u);
}

TEST(Counters, OfBssAndRadio) {
  start_radios("ra0 ra1");
  start_daemon();
  gwbox("set bss 1 counters=[1,2,3,4,5,6,7,8,9,10,11,12,13,14]");
  gwbox("set bss 2 counters=[100,200,300,400,500,600,700,800,0,0,0,0,0,0]");
  const std::string basic = answer(kGetBasicStats, xdr_word(1));
  EXPECT_EQ(basic, xdr_word(0) + xdr_word(20) + xdr_word(4) + xdr_word(3) + xdr_word(1) +
                       xdr_word(2) + std::string(4 * 16, '\0') + xdr_word(0));
  EXPECT_EQ(record_word(kGetStats, xdr_word(1) + xdr_word(0), 0), 7u);
  EXPECT_EQ(record_word(kGetStats, xdr_word(1) + xdr_word(1), 0), 707u);
  set_profile_value("/tmp/mt76xx_24.dat", "BssEnabled", "1;0;0;0;0;0;0;0");
  EXPECT_EQ(record_word(kGetStats, xdr_word(1) + xdr_word(1), 0), 7u);
}

static uint64_t bytes_of(uint32_t procedure, uint32_t index) {
  const std::string payload = answer(procedure, xdr_word(index));
  EXPECT_EQ(word_at(payload, 0), 0u);
  EXPECT_EQ(word_at(payload, 4), 8u);
  return word_at(payload, 8) | static_cast<uint64_t>(word_at(payload, 12)) << 32;
}

TEST(Counters, BytesAddUpPastThirtyTwoBits) {
  start_radios("ra0 ra1");
  start_daemon();
  gwbox("set bss 1 ssid_rx_bytes=4000000000 ssid_tx_bytes=30");
  gwbox("set bss 2 ssid_rx_bytes=5 ssid_tx_bytes=6");
  EXPECT_EQ(bytes_of(kGetSsidBytesReceived, 1), 4000000000u);
  gwbox("set bss 1 ssid_rx_bytes=4000000001 ssid_tx_bytes=0");
  EXPECT_EQ(bytes_of(kGetSsidBytesReceived, 1), 8000000001u);
  EXPECT_EQ(bytes_of(kGetSsidBytesSent, 1), 30u);
  EXPECT_EQ(bytes_of(kGetRadioBytesReceived, 2), 8000000006u);
  EXPECT_EQ(bytes_of(kGetRadioBytesSent, 1), 36u);
  EXPECT_EQ(bytes_of(kGetSsidBytesSent, 2), 6u);
  EXPECT_EQ(bytes_of(kGetSsidBytesSent, 8), 0u) << "BSS 8 is not up";
}
