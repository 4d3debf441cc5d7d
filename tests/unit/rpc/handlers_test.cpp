#include "rpc/handlers.h"

#include <gtest/gtest.h>

#include <string>

#include "rpc/wire_support.h"
#include "support/hnc_listener.h"
#include "unit_support.h"

// What a handler logs. Releases its result.
template <typename Handler>
static std::string log_of_getter(Handler handler) {
  switch_log_on();
  wlan_config_result_data_t result = {};
  EXPECT_EQ(handler(&result), 1);
  released(xdr_wlan_config_result_data_t, &result);
  return logged();
}

template <typename Handler>
static std::string log_of_setter(Handler handler) {
  switch_log_on();
  wlan_config_return_code_e result = 77;
  EXPECT_EQ(handler(&result), 1);
  EXPECT_NE(result, 77);
  return logged();
}

TEST(Handlers, SetterShowsItsInput) {
  write_file(kProfile24, "SSID3=old\n");
  char ssid[] = "Living room";
  const std::string log =
      log_of_setter([&](int* result) { return wlan_set_ssid_1_svc(3, ssid, result, nullptr); });
  EXPECT_TRUE(log.starts_with(" WLAN RPC server : [ssid=Living room]\n")) << log;
}

TEST(Handlers, SetterShowsAllItsInputBehindTheIndex) {
  write_file(kProfile24, "WPAPSK3=old\n");
  char text[] = "pass phrase";
  const std::string log = log_of_setter(
      [&](int* result) { return wlan_set_key_passphrase_1_svc(3, 1, text, result, nullptr); });
  EXPECT_TRUE(log.starts_with(" WLAN RPC server : [key_index=1][passphrase=pass phrase]\n")) << log;
}

TEST(Handlers, SetterShowsUnsignedInputUnsigned) {
  EXPECT_EQ(log_of_setter(
                [](int* result) { return wlan_set_channel_1_svc(1, 0xFFFFFFFF, result, nullptr); }),
            " WLAN RPC server : [channel=4294967295]\n");
}

TEST(Handlers, SetterShowsAFlagAsANumber) {
  EXPECT_EQ(log_of_setter(
                [](int* result) { return wlan_set_radio_enabled_1_svc(1, TRUE, result, nullptr); }),
            " WLAN RPC server : [enable=1]\n");
}

TEST(Handlers, SetterOfAnIndexAloneShowsTheIndex) {
  EXPECT_EQ(log_of_setter(
                [](int* result) { return wlan_set_restore_defaults_1_svc(5, result, nullptr); }),
            " WLAN RPC server : [bss=5]\n");
}

TEST(Handlers, SetterWithoutInputShowsNone) {
  EXPECT_EQ(log_of_setter([](int* result) { return wlan_check_rpc_alive_1_svc(result, nullptr); }),
            " WLAN RPC server : \n");
}

TEST(Handlers, SetterIsTracedOnTheConsoleWithItsName) {
  switch_console_on();
  EXPECT_EQ(output_of([] {
              int result = 77;
              EXPECT_EQ(wlan_set_channel_1_svc(1, 11, &result, nullptr), 1);
              EXPECT_EQ(result, 0);
            }),
            rpc_prefix("wlan_set_channel_1_svc") + " WLAN RPC server : [channel=11]\n");
}

TEST(Handlers, IntegerGetterShowsIndexAndValue) {
  EXPECT_EQ(log_of_getter([](wlan_config_result_data_t* result) {
              return wlan_get_channel_1_svc(9, result, nullptr);
            }),
            " WLAN RPC server : index 9\n"
            " WLAN RPC server : [channel = 0 ]\n");
}

TEST(Handlers, IntegerGetterIsTracedOnTheConsoleWithItsName) {
  switch_console_on();
  const std::string output = output_of([] {
    wlan_config_result_data_t result = {};
    EXPECT_EQ(wlan_get_channel_1_svc(9, &result, nullptr), 1);
    released(xdr_wlan_config_result_data_t, &result);
  });
  const std::string prefix = rpc_prefix("wlan_get_channel_1_svc");
  EXPECT_EQ(output, prefix + " WLAN RPC server : index 9\n" + prefix +
                        " WLAN RPC server : [channel = 0 ]\n");
}

TEST(Handlers, IntegerGetterOfTwoIndexesShowsTheFirst) {
  EXPECT_EQ(log_of_getter([](wlan_config_result_data_t* result) {
              return wlan_get_og_aifsn_1_svc(2, 3, result, nullptr);
            }),
            " WLAN RPC server : index 2\n"
            " WLAN RPC server : [og_aifsn = 0 ]\n");
}

TEST(Handlers, IntegerGetterPacksTheValueOfAFailingBackEnd) {
  switch_log_on();
  write_file(kProfile24, "BSSHNCService=7\n");
  wlan_config_result_data_t result = {};
  errors_of([&] { EXPECT_EQ(wlan_get_bss_hnc_service_1_svc(2, &result, nullptr), 1); });
  EXPECT_EQ(encoded(xdr_wlan_config_result_data_t, &result),
            word(~0U) + word(4) + zeros(4) + word(0));
  released(xdr_wlan_config_result_data_t, &result);
  EXPECT_TRUE(logged().ends_with(" WLAN RPC server : [bss_hnc_service = 0 ]\n")) << logged();
}

TEST(Handlers, IntegerGetterPacksTheValueOfItsBackEnd) {
  write_file(kProfile5, "BSSHNCService=7;3\n");
  wlan_config_result_data_t result = {};
  EXPECT_EQ(wlan_get_bss_hnc_service_1_svc(10, &result, nullptr), 1);
  EXPECT_EQ(encoded(xdr_wlan_config_result_data_t, &result),
            word(0) + word(4) + word(3) + zeros(3) + word(0));
  released(xdr_wlan_config_result_data_t, &result);
}

TEST(Handlers, TextGetterShowsIndexLengthAndText) {
  EXPECT_EQ(log_of_getter([](wlan_config_result_data_t* result) {
              return wlan_get_ssid_1_svc(3, result, nullptr);
            }),
            " WLAN RPC server : [index 3]\n"
            " WLAN RPC server : [len = 1]\n"
            " WLAN RPC server : [ssid ]\n");
}

TEST(Handlers, TextGetterIsTracedOnTheConsoleWithItsName) {
  switch_console_on();
  const std::string output = output_of([] {
    wlan_config_result_data_t result = {};
    EXPECT_EQ(wlan_get_ssid_1_svc(3, &result, nullptr), 1);
    released(xdr_wlan_config_result_data_t, &result);
  });
  const std::string prefix = rpc_prefix("wlan_get_ssid_1_svc");
  EXPECT_EQ(output, prefix + " WLAN RPC server : [index 3]\n" + prefix +
                        " WLAN RPC server : [len = 1]\n" + prefix + " WLAN RPC server : [ssid ]\n");
}

// Getters of the controller.

TEST(Handlers, EveryTextGetterOfTheControllerShowsItsTextTwice) {
  write_file("/nvram/hnc_enable", "");
  start_listener();
  listener_answers(hnc_reply_bytes("given %n"));
  using text_getter = int (*)(int, wlan_config_result_data_t*, svc_req*);
  const struct {
    const char* name;
    text_getter handler;
  } getters[] = {
      {"updatefw_url", hnc_get_updatefw_url_1_svc},
      {"updatefw_filename", hnc_get_updatefw_filename_1_svc},
      {"updatefw_username", hnc_get_updatefw_username_1_svc},
      {"updatefw_password", hnc_get_updatefw_password_1_svc},
      {"updatefw_time", hnc_get_updatefw_time_1_svc},
      {"supportedhnemanufacturer", hnc_get_supportedhnemanufacturer_1_svc},
      {"supportedhnemodelname", hnc_get_supportedhnemodelname_1_svc},
      {"supportedhnemodelnumber", hnc_get_supportedhnemodelnumber_1_svc},
  };
  std::string expected;
  for (const auto& row : getters) {
    const std::string name = row.name;
    expected +=
        " WLAN RPC server : [index 3]\n WLAN RPC server : [len = 9]\n"
        " WLAN RPC server : [" +
        name + " given %n]\nDEBUG>>>>>>>>>>>>>>>>>In hnc_get_" + name +
        "_1_svc fun. result->return_data.return_data_val:-given %n-\n";
    EXPECT_EQ(log_of_getter([&](wlan_config_result_data_t* result) {
                return row.handler(3, result, nullptr);
              }),
              expected);
  }
}

TEST(Handlers, GetterWithoutInputShowsNone) {
  write_file("/nvram/hnc_enable", "");
  start_listener();
  listener_answers(hnc_reply_bytes("1"));
  using plain_getter = int (*)(wlan_config_result_data_t*, svc_req*);
  const struct {
    const char* name;
    plain_getter handler;
  } getters[] = {
      {"client_steering_enable", hnc_get_client_steering_enable_1_svc},
      {"client_rrm_enable", hnc_get_client_rrm_enable_1_svc},
      {"msearch_enable", hnc_get_msearch_enable_1_svc},
      {"hne_config_attempts", hnc_get_hne_config_attempts_1_svc},
      {"hne_config_duration", hnc_get_hne_config_duration_1_svc},
      {"hne_security_enable", hnc_get_hne_security_enable_1_svc},
  };
  std::string expected;
  for (const auto& row : getters) {
    expected += " WLAN RPC server :\n WLAN RPC server : [" + std::string(row.name) + " = 1 ]\n";
    EXPECT_EQ(log_of_getter(
                  [&](wlan_config_result_data_t* result) { return row.handler(result, nullptr); }),
              expected);
  }
}

TEST(Handlers, ImageGetterShowsItsLength) {
  EXPECT_EQ(log_of_getter([](wlan_config_result_data_t* result) {
              return wlan_get_assoc_device_1_svc(1, 0, result, nullptr);
            }),
            " WLAN RPC server : [index 1]\n"
            " WLAN RPC server : result->return_data.return_data_len = 236\n");
}

TEST(Handlers, GetterOfATextShowsTheText) {
  char name[] = "ra0";
  EXPECT_EQ(log_of_getter([&](wlan_config_result_data_t* result) {
              return wlan_get_bssid_port_1_svc(name, result, nullptr);
            }),
            " WLAN RPC server : [ra0]\n");
}

TEST(Handlers, NothingIsTracedWithoutTheSwitches) {
  std::string errors;
  const std::string output = output_of([&] {
    errors = errors_of([] {
      wlan_config_result_data_t result = {};
      EXPECT_EQ(wlan_get_ssid_1_svc(3, &result, nullptr), 1);
      released(xdr_wlan_config_result_data_t, &result);
    });
  });
  EXPECT_EQ(output, "");
  EXPECT_EQ(errors, "");
}

TEST(Handlers, HandlersWithoutABackEndAnswerAnEmptyRecord) {
  switch_log_on();
  using empty_getter = int (*)(int, wlan_config_result_data_t*, svc_req*);
#define ADDRESS(handler) handler,
  const empty_getter getters[] = {DCS_GETTERS(ADDRESS) wlan_get_radio_upstream_1_svc};
  EXPECT_EQ(std::size(getters), 14u);
  for (const empty_getter handler : getters) {
    wlan_config_result_data_t result = {};
    EXPECT_EQ(handler(9, &result, nullptr), 1);
    EXPECT_EQ(encoded(xdr_wlan_config_result_data_t, &result), zeros(3));
  }
  EXPECT_EQ(logged(), "");
}
