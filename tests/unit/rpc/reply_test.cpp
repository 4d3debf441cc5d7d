#include "rpc/reply.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "rpc/wire_support.h"
#include "unit_support.h"

static std::string sent(wlan_config_result_data_t* result) {
  const std::string bytes = encoded(xdr_wlan_config_result_data_t, result);
  released(xdr_wlan_config_result_data_t, result);
  return bytes;
}

TEST(Reply, EmptyResultTakesTwelveBytes) {
  wlan_config_result_data_t result = {};
  result.return_code = -1;
  EXPECT_EQ(sent(&result), word(~0U) + word(0) + word(0));
}

TEST(Reply, IntegerTakesFourWordsOfWhichTheFirstCounts) {
  wlan_config_result_data_t result = {};
  pack_int("wlan_get_channel_1_svc", "channel", 11, &result);
  EXPECT_EQ(sent(&result), word(0) + word(4) + word(11) + zeros(3) + word(0));
}

TEST(Reply, IntegerMayBeAnyValue) {
  for (const int value : {0, 1, -1, INT_MAX, INT_MIN}) {
    wlan_config_result_data_t result = {};
    result.return_code = 3;
    pack_int("wlan_get_channel_1_svc", "channel", value, &result);
    const std::string expected = word(3) + word(4) + word(static_cast<unsigned>(value));
    EXPECT_EQ(sent(&result), expected + zeros(4)) << value;
  }
}

TEST(Reply, TextOfThreeCharactersTakesSixteenBytes) {
  wlan_config_result_data_t result = {};
  char text[32] = "abc";
  pack_text("wlan_get_ssid_1_svc", "ssid", text, sizeof text, &result);
  EXPECT_EQ(sent(&result), word(0) + word(0) + word(4) + std::string("abc\0", 4));
}

TEST(Reply, EmptyTextIsASingleNul) {
  wlan_config_result_data_t result = {};
  char text[32] = {};
  pack_text("wlan_get_ssid_1_svc", "ssid", text, sizeof text, &result);
  EXPECT_EQ(sent(&result), word(0) + word(0) + word(1) + zeros(1));
}

TEST(Reply, TextThatFillsItsBufferStillEndsInANul) {
  wlan_config_result_data_t result = {};
  const std::string full(32, 'x');
  pack_text("wlan_get_ssid_1_svc", "ssid", full.data(), full.size(), &result);
  EXPECT_EQ(result.return_data.return_data_len, 32u);
  EXPECT_EQ(std::string(result.return_data.return_data_val), std::string(31, 'x'));
  released(xdr_wlan_config_result_data_t, &result);
}

TEST(Reply, RecordAnnouncesItsBytesAsWordsTheRestZero) {
  wlan_config_result_data_t result = {};
  const u_int record[5] = {1, 2, 3, 4, 5};
  pack_words(record, sizeof record, &result);
  EXPECT_EQ(sent(&result), word(0) + word(20) + word(1) + word(2) + word(3) + word(4) + word(5) +
                               zeros(15) + word(0));
}

TEST(Reply, LongValueIsSentLowWordFirst) {
  wlan_config_result_data_t result = {};
  const uint64_t counter = 0x1122334455667788;
  pack_words(&counter, sizeof counter, &result);
  EXPECT_EQ(sent(&result),
            word(0) + word(8) + word(0x55667788) + word(0x11223344) + zeros(6) + word(0));
}

TEST(Reply, ImageIsSentAsItIs) {
  wlan_config_result_data_t result = {};
  const std::string image("\0\1\2\xff\0", 5);
  pack_image(image.data(), image.size(), &result);
  EXPECT_EQ(sent(&result), word(0) + word(0) + text_item(image));
}

TEST(Reply, ImageOf8257BytesCannotBeSent) {
  const std::string image(8257, 'x');
  wlan_config_result_data_t result = {};
  pack_image(image.data(), image.size(), &result);
  EXPECT_EQ(sent(&result), "(refused)");
  result = {};
  pack_image(image.data(), 8256, &result);
  EXPECT_EQ(sent(&result).size(), 12u + 8256u);
}

TEST(Reply, IntegerIsTraced) {
  switch_log_on();
  switch_console_on();
  wlan_config_result_data_t result = {};
  const std::string output =
      output_of([&] { pack_int("wlan_get_channel_1_svc", "channel", -6, &result); });
  released(xdr_wlan_config_result_data_t, &result);
  EXPECT_EQ(logged(), " WLAN RPC server : [channel = -6 ]\n");
  EXPECT_EQ(output, rpc_prefix("wlan_get_channel_1_svc") + " WLAN RPC server : [channel = -6 ]\n");
}

TEST(Reply, TextIsTracedWithTheLengthThatIncludesTheNul) {
  switch_log_on();
  wlan_config_result_data_t result = {};
  char text[32] = "Living room";
  pack_text("wlan_get_ssid_1_svc", "ssid", text, sizeof text, &result);
  released(xdr_wlan_config_result_data_t, &result);
  EXPECT_EQ(logged(),
            " WLAN RPC server : [len = 12]\n"
            " WLAN RPC server : [ssid Living room]\n");
}
