#include <gtest/gtest.h>

#include <string>

#include "rpc/handlers.h"
#include "rpc/wire_support.h"
#include "support/gateway.h"
#include "unit_support.h"

struct mac_row {
  const char* name;
  const char* key;
  int (*handler)(int, wlan_config_result_data_t*, svc_req*);
  uint32_t missing;
};

static constexpr mac_row kMacs[] = {
    {"wlan_get_hnc_steer_sta_mac_address_1_svc", "HNCSteerSTAMac",
     wlan_get_hnc_steer_sta_mac_address_1_svc, 0},
    {"wlan_get_hnc_action_frame_mac_address_1_svc", "HNCActionFrameMac",
     wlan_get_hnc_action_frame_mac_address_1_svc, 0xFFFFFFFF},
    {"wlan_get_na_sta_request_mac_address_1_svc", "NonAssocReqMac",
     wlan_get_na_sta_request_mac_address_1_svc, 0xFFFFFFFF},
};

static std::string answer_of(int (*handler)(int, wlan_config_result_data_t*, svc_req*), int index) {
  wlan_config_result_data_t result = {};
  EXPECT_EQ(handler(index, &result, nullptr), 1);
  const std::string bytes = encoded(xdr_wlan_config_result_data_t, &result);
  released(xdr_wlan_config_result_data_t, &result);
  return bytes;
}

// Code, no words, eighteen bytes and padding.
static std::string mac_reply(uint32_t code, std::string text) {
  text.resize(20, '\0');
  return word(code) + word(0) + word(18) + text;
}

TEST(HandlersSteering, AddressesAreEighteenBytes) {
  for (const mac_row& row : kMacs) {
    set_profile_value(kProfile24, row.key, "02:00:5e:00:00:01");
    EXPECT_EQ(answer_of(row.handler, 1), mac_reply(1, "02:00:5e:00:00:01")) << row.name;
    set_profile_value(kProfile24, row.key, "");
    EXPECT_EQ(answer_of(row.handler, 1), mac_reply(1, "")) << row.name;
    set_profile_value(kProfile24, row.key, "123456789012345678");
    EXPECT_EQ(answer_of(row.handler, 1), mac_reply(1, "12345678901234567")) << row.name;
    set_profile_value(kProfile24, row.key, "1234567890123456789");
    errors_of([&] { EXPECT_EQ(answer_of(row.handler, 1), mac_reply(row.missing, "")); });
  }
}

TEST(HandlersSteering, AddressesAreTraced) {
  for (const mac_row& row : kMacs) {
    set_profile_value(kProfile5, row.key, "02:00:5e:00:00:01");
    switch_console_on();
    const std::string prefix = rpc_prefix(row.name);
    EXPECT_EQ(output_of([&] { answer_of(row.handler, 9); }),
              prefix + " WLAN RPC server : [index 9]\n" + prefix +
                  " WLAN RPC server : [out_str = 02:00:5e:00:00:01 ]\n");
  }
}

// Code, no words, the text with its NUL and padding.
static std::string text_reply(uint32_t code, const std::string& text) {
  std::string padded = text + '\0';
  const size_t length = padded.size();
  padded.resize((length + 3) / 4 * 4, '\0');
  return word(code) + word(0) + word(static_cast<uint32_t>(length)) + padded;
}

TEST(HandlersSteering, LongestTextsAreSentWhole) {
  const std::string type(256, 't');
  const std::string payload(1025, 'a');
  set_profile_value(kProfile24, "HNCActionFrameType", type);
  set_profile_value(kProfile24, "HNCActionFramePayload", payload);
  EXPECT_EQ(answer_of(wlan_get_hnc_action_frame_category_type_1_svc, 1), text_reply(1, type));
  EXPECT_EQ(answer_of(wlan_get_hnc_action_frame_payload_1_svc, 1), text_reply(1, payload));
  set_profile_value(kProfile24, "HNCActionFrameType", type + "t");
  set_profile_value(kProfile24, "HNCActionFramePayload", payload + "a");
  errors_of([&] {
    EXPECT_EQ(answer_of(wlan_get_hnc_action_frame_category_type_1_svc, 1),
              text_reply(0xFFFFFFFF, ""));
    EXPECT_EQ(answer_of(wlan_get_hnc_action_frame_payload_1_svc, 1), text_reply(0, ""));
  });
}

TEST(HandlersSteering, TextsAreTraced) {
  set_profile_value(kProfile5, "HNCActionFramePayload", "0a1b");
  switch_console_on();
  const std::string prefix = rpc_prefix("wlan_get_hnc_action_frame_payload_1_svc");
  EXPECT_EQ(output_of([] { answer_of(wlan_get_hnc_action_frame_payload_1_svc, 9); }),
            prefix + " WLAN RPC server : [index 9]\n" + prefix + " WLAN RPC server : [len = 5]\n" +
                prefix + " WLAN RPC server : [hnc_action_frame_payload 0a1b]\n");
}
