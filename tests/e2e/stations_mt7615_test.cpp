#include <gtest/gtest.h>

#include <cstring>

#include "support/daemon.h"
#include "support/stations.h"
#include "support/wire.h"

// The dual-band chip's driver also reports receive rates and which stations support BSS
// transition management.

static constexpr uint32_t kGetBtmAssociatedDevice = 293;

static reply_message list_of(uint32_t bss) {
  reply_message reply = {};
  EXPECT_TRUE(call(kGetBtmAssociatedDevice, xdr_word(bss), &reply));
  EXPECT_EQ(reply.payload.size(), 12u + 2436);
  return reply;
}

static int number_at(const std::string& bytes, size_t at) {
  int value = 0;
  memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

TEST(BtmList, TellsRatesAndCapabilityOfEachStation) {
  start_radios("ra0 ra8");
  start_daemon();
  set_station(1, "bss=9 tx_rate='VHT80 MCS9 NSS2' rx_rate='VHT160 MCS9 NSS4 SGI' btm=true");
  set_station(2, "bss=9 tx_rate='OFDM 54' rx_rate='OFDM 6'");
  set_station(3, "bss=1 tx_rate='CCK 11' rx_rate='CCK 1' btm=true");
  const std::string list = list_of(9).payload.substr(12);
  ASSERT_EQ(number_at(list, 0), 2);
  const std::string first = list.substr(4, 76);
  EXPECT_EQ(number_at(first, 4), 780 * 1024);
  EXPECT_EQ(number_at(first, 8), 3466 * 1024);
  EXPECT_EQ(first[59], 8);
  const std::string second = list.substr(80, 76);
  EXPECT_EQ(number_at(second, 4), 54 * 1024);
  EXPECT_EQ(number_at(second, 8), 6 * 1024);
  EXPECT_EQ(number_at(second, 12), 7);
  EXPECT_EQ(number_at(second, 16), 0);
  EXPECT_EQ(second[59], 0);
  const std::string other = list_of(1).payload.substr(12);
  ASSERT_EQ(number_at(other, 0), 1);
  EXPECT_EQ(number_at(other, 4 + 4), 11 * 1024);
  EXPECT_EQ(number_at(other, 4 + 8), 1024);
}

TEST(BtmList, RadioWhoseDriverDoesNotKnowItFails) {
  start_radios("ra0");
  start_daemon();
  set_station(1, "bss=1");
  gwbox("set radio ra0 btm=false");
  const reply_message reply = list_of(1);
  EXPECT_EQ(static_cast<int32_t>(word_at(reply.payload, 0)), -1);
  EXPECT_EQ(word_at(reply.payload, 12), 0u);
  EXPECT_NE(daemon_errors().find("query STA 02:00:5e:00:01:01 btm capability failed. \n "),
            std::string::npos)
      << daemon_errors();
}
