#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "rpc/handlers.h"
#include "rpc/wire_support.h"
#include "support/gateway.h"
#include "support/stations.h"
#include "unit_support.h"

using getter = int (*)(int, wlan_config_result_data_t*, svc_req*);

// A getter's reply as XDR.
template <typename Handler>
static std::string reply_of(Handler handler) {
  wlan_config_result_data_t result = {};
  EXPECT_EQ(handler(&result), 1);
  std::string bytes = encoded(xdr_wlan_config_result_data_t, &result);
  released(xdr_wlan_config_result_data_t, &result);
  return bytes;
}

static std::string stats_reply(int bss, unsigned type) {
  return reply_of([&](auto* result) { return wlan_get_stats_1_svc(bss, type, result, nullptr); });
}

static std::string sixteen(std::initializer_list<unsigned> values) {
  std::string bytes;
  for (const unsigned value : values)
    bytes += word(value);
  return bytes + zeros(16 - static_cast<unsigned>(values.size()));
}

// The record has 64 bytes but announces 64 words; the rest are zeros.
static std::string stats_payload(unsigned code, const std::string& sixteen_words) {
  return word(code) + word(64) + sixteen_words + zeros(48) + word(0);
}

TEST(StatsHandler, TypeChoosesBetweenTheBssAndItsRadio) {
  start_radios("ra0 ra1");
  gwbox("set bss 1 counters=[1,2,3,4,5,6,7,8,9,10,11,12,13,14]");
  gwbox("set bss 2 counters=[100,200,300,400,500,600,700,800,0,0,0,0,0,0]");
  set_profile_value(kProfile24, "BssEnabled", "1;1;0;0;0;0;0;0");
  EXPECT_EQ(stats_reply(1, 0), stats_payload(0, sixteen({7, 5, 9, 10, 8, 6, 11, 12, 13, 14, 0})));
  EXPECT_EQ(
      stats_reply(1, 1),
      stats_payload(0, sixteen({707, 505, 0, 0, 808, 606, 0, 0, 0, 0, 0, 404, 303, 101, 202})));
}

TEST(StatsHandler, OtherTypesFailAndAskNothing) {
  start_radios("ra0");
  const size_t before = driver_requests().size();
  for (const unsigned type : {2U, 3U, 255U, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_EQ(stats_reply(1, type), stats_payload(~0U, sixteen({}))) << type;
  EXPECT_EQ(driver_requests().size(), before);
}

TEST(StatsHandler, IndexOfNoRadioFailsForARadioOnly) {
  for (const int bss : {0, 17, -5, INT_MIN, INT_MAX}) {
    EXPECT_EQ(stats_reply(bss, 1), stats_payload(~0U, sixteen({}))) << bss;
    errors_of([&] { EXPECT_EQ(stats_reply(bss, 0), stats_payload(0, sixteen({}))) << bss; });
  }
}

TEST(StatsHandler, ShowsItsIndex) {
  switch_log_on();
  EXPECT_TRUE(stats_reply(9, 7) != "");
  EXPECT_EQ(logged(), " WLAN RPC server : [index 9]\n");
}

TEST(BasicStatsHandler, AnswersTwentyWords) {
  start_radios("ra0");
  gwbox("set bss 1 counters=[1,2,3,4,5,6,7,8,9,10,11,12,13,14]");
  set_station(1, "bss=1");
  EXPECT_EQ(
      reply_of([](auto* result) { return wlan_get_basic_stats_1_svc(1, result, nullptr); }),
      word(0) + word(20) + word(4) + word(3) + word(1) + word(2) + word(1) + zeros(15) + word(0));
}

TEST(StationsHandlers, NumberIsAnInteger) {
  start_radios("ra0");
  set_station(1, "bss=1");
  const auto number = [](int bss) {
    return reply_of(
        [&](auto* result) { return wlan_get_assoc_devices_num_1_svc(bss, result, nullptr); });
  };
  EXPECT_EQ(number(1), word(0) + word(4) + word(1) + zeros(3) + word(0));
  errors_of([&] { EXPECT_EQ(number(17), word(~0U) + word(4) + zeros(4) + word(0)); });
}

TEST(StationsHandlers, TableIsAnImageOfFixedLength) {
  start_radios("ra0");
  set_station(1, "bss=1 rssi=[-50]");
  const auto table = [](int bss) {
    return reply_of(
        [&](auto* result) { return wlan_get_assoc_devices_table_1_svc(bss, result, nullptr); });
  };
  switch_log_on();
  const std::string reply = table(1);
  EXPECT_EQ(logged(),
            " WLAN RPC server : [index 1]\n"
            " WLAN RPC server : result->return_data.return_data_len = 5124 \n");
  EXPECT_EQ(reply.size(), 12u + 5124);
  EXPECT_EQ(reply.substr(0, 12), word(0) + word(0) + word(5124));
  EXPECT_EQ(reply.substr(12, 12), std::string("\1\0\0\0\0\2\0\x5e\0\1\1\1", 12));
  errors_of([&] { EXPECT_EQ(table(0), word(~0U) + word(0) + word(5124) + zeros(1281)); });
}

struct bytes_case {
  const char* name;
  getter handler;
  bool radio, sent;
};
static constexpr bytes_case kBytesCases[] = {
    {"wlan_get_radio_bytes_send_1_svc", wlan_get_radio_bytes_send_1_svc, true, true},
    {"wlan_get_radio_bytes_receive_1_svc", wlan_get_radio_bytes_receive_1_svc, true, false},
    {"wlan_get_ssid_bytes_send_1_svc", wlan_get_ssid_bytes_send_1_svc, false, true},
    {"wlan_get_ssid_bytes_receive_1_svc", wlan_get_ssid_bytes_receive_1_svc, false, false},
};

static std::string bytes_reply(const bytes_case& c, int index) {
  return reply_of([&](auto* result) { return c.handler(index, result, nullptr); });
}

// Low word first.
static std::string bytes_payload(unsigned code, uint64_t value) {
  return word(code) + word(8) + word(static_cast<unsigned>(value)) +
         word(static_cast<unsigned>(value >> 32)) + zeros(6) + word(0);
}

TEST(BytesHandlers, AnswerTheirDirectionOfTheBssOrOfItsRadio) {
  start_radios("ra0 ra1 ra8");
  gwbox("set bss 1 ssid_rx_bytes=4294967295 ssid_tx_bytes=20");
  gwbox("set bss 2 ssid_rx_bytes=100 ssid_tx_bytes=4000000000");
  gwbox("set bss 9 ssid_rx_bytes=7 ssid_tx_bytes=8");
  for (const bytes_case& c : kBytesCases) {
    const uint64_t second = c.sent ? 4000000000 : 100;
    const uint64_t sum = c.sent ? 4000000020 : 4294967395;
    EXPECT_EQ(bytes_reply(c, 2), bytes_payload(0, c.radio ? sum : second)) << c.name;
    EXPECT_EQ(bytes_reply(c, 8), bytes_payload(0, c.radio ? sum : 0)) << c.name;
    EXPECT_EQ(bytes_reply(c, 9), bytes_payload(0, c.sent ? 8 : 7)) << c.name;
  }
}

TEST(BytesHandlers, EveryCallAddsWhatCameSince) {
  start_radios("ra0");
  gwbox("set bss 1 ssid_rx_bytes=1000");
  EXPECT_EQ(bytes_reply(kBytesCases[3], 1), bytes_payload(0, 1000));
  EXPECT_EQ(bytes_reply(kBytesCases[3], 1), bytes_payload(0, 1000));
  gwbox("set bss 1 ssid_rx_bytes=234");
  // Counted by the earlier call for the other direction.
  EXPECT_EQ(bytes_reply(kBytesCases[0], 1), bytes_payload(0, 0));
  EXPECT_EQ(bytes_reply(kBytesCases[3], 1), bytes_payload(0, 1234));
}

TEST(BytesHandlers, IndexOfNoRadioFailsWithoutAskingTheDriver) {
  for (const bytes_case& c : kBytesCases) {
    for (const int index : {0, 17, -5, INT_MIN, INT_MAX})
      EXPECT_EQ(errors_of([&] { EXPECT_EQ(bytes_reply(c, index), bytes_payload(~0U, 0)); }), "")
          << c.name << index;
  }
  EXPECT_TRUE(driver_requests().empty());
}

TEST(BytesHandlers, AskTheInterfaceOfTheRadio) {
  start_radios("ra8");
  EXPECT_EQ(bytes_reply(kBytesCases[0], 12), bytes_payload(0, 0));
  EXPECT_TRUE(contains(driver_requests().back(), R"("interface":"ra8")"))
      << driver_requests().back();
}

TEST(BytesHandlers, FailureAnswersZeros) {
  start_radios("ra0");
  gwbox("set bss 1 ssid_rx_bytes=1000 ssid_tx_bytes=1000");
  for (const bytes_case& c : kBytesCases) {
    EXPECT_EQ(bytes_reply(c, 1), bytes_payload(0, 1000)) << c.name;
    gwbox("fail ssid_traffic EIO");
    errors_of([&] { EXPECT_EQ(bytes_reply(c, 1), bytes_payload(~0U, 0)) << c.name; });
  }
}

TEST(BytesHandlers, ShowTheirIndexUnderTheirNames) {
  start_radios("ra0");
  switch_console_on();
  for (const bytes_case& c : kBytesCases) {
    const std::string output = output_of([&] { EXPECT_FALSE(bytes_reply(c, 3).empty()); });
    EXPECT_TRUE(output.starts_with(rpc_prefix(c.name) + " WLAN RPC server : [index 3]\n"))
        << output;
  }
}
