#include <gtest/gtest.h>

#include "datagram_daemon.h"
#include "rpc/handlers.h"
#include "rpc/wire_support.h"
#include "unit_support.h"

// 41 13 32, noise -84 -95 -91 -90, retry 3, packets, and RSSI values from -100 upwards.
static std::string reply() {
  std::vector<int64_t> words = {41, 13, 32, -84, -95, -91, -90, 3, 1000, -5};
  for (int i = 0; i < 38; ++i)
    words.push_back(-100 + i);
  return little_endian(words);
}

namespace {

struct outcome {
  std::string record;
  std::string log;
};

}  // namespace

template <typename Handler>
static outcome handle(Handler handler) {
  switch_log_on();
  datagram_daemon daemon;
  start_datagram_daemon("/var/run/radstat/ra8", {reply()}, &daemon);
  wlan_config_result_data_t result = {};
  EXPECT_EQ(handler(9, &result, nullptr), 1);
  outcome seen = {encoded(xdr_wlan_config_result_data_t, &result), logged()};
  released(xdr_wlan_config_result_data_t, &result);
  end_datagram_daemon(&daemon);
  return seen;
}

// A record: code 0, the announced number of words, then these words and zeros.
static std::string record(unsigned announced, const std::vector<int>& words) {
  std::string bytes = word(0) + word(announced);
  for (const int value : words)
    bytes += word(static_cast<unsigned>(value));
  return bytes + zeros(announced - static_cast<unsigned>(words.size())) + word(0);
}

TEST(RadioStatisticsHandlers, ChannelStatisticsAreThreeWords) {
  const outcome seen = handle(wlan_get_channel_statistics_1_svc);
  EXPECT_EQ(seen.record, record(12, {41, 13, 32}));
  EXPECT_EQ(seen.log, " WLAN RPC server : [index 9]\n");
}

TEST(RadioStatisticsHandlers, NoiseFloorIsLowestHighestMedianAndAverage) {
  const outcome seen = handle(wlan_get_channel_noise_floor_1_svc);
  EXPECT_EQ(seen.record, record(16, {-95, -84, -91, -90}));
  EXPECT_EQ(seen.log, " WLAN RPC server : [index 9]\n");
}

TEST(RadioStatisticsHandlers, CountsAreTwoWordsLowOneFirst) {
  EXPECT_EQ(handle(wlan_get_radio_tx_packets_1_svc).record, record(8, {1000, 0}));
  EXPECT_EQ(handle(wlan_get_radio_rx_packets_1_svc).record, record(8, {-5, -1}));
}

TEST(RadioStatisticsHandlers, RetransmissionMetricIsOneValueWithItsTraces) {
  const outcome seen = handle(wlan_get_retransmission_metric_1_svc);
  EXPECT_EQ(seen.record, record(4, {3}));
  EXPECT_EQ(seen.log,
            " WLAN RPC server : index 9\n"
            " WLAN RPC server : [retransmission_metric = 3 ]\n");
}

TEST(RadioStatisticsHandlers, RssiTableIsThirtySevenPairsOfWordsAndATraceEach) {
  const outcome seen = handle(wlan_get_rssi_table_1_svc);
  std::vector<int> words;
  std::string log = " WLAN RPC server : [index 9]\n";
  for (int i = 0; i < 37; ++i) {
    words.insert(words.end(), {-100 + i, -1});
    log += " WLAN RPC server : [i = " + std::to_string(i) +
           "] [RSSI = " + std::to_string(-100 + i) + " ]  \n";
  }
  EXPECT_EQ(seen.record, record(296, words));
  EXPECT_EQ(seen.log, log);
}
