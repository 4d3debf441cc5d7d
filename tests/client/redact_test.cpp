#include "values/redact.h"

#include <gtest/gtest.h>

#include "wire/lookup.h"

static std::string redacted(redaction& state, const char* procedure, const char* value) {
  nlohmann::ordered_json answer = {{"return_code", 0},
                                   {"value", nlohmann::ordered_json::parse(value)}};
  redact(*lookup_name(procedure), answer, state);
  return answer["value"].dump();
}

static std::string redacted(const char* procedure, const char* value) {
  redaction state;
  return redacted(state, procedure, value);
}

TEST(Redact, SecretsAreLeftOutByWhatTheLayoutsSay) {
  EXPECT_EQ(redacted("hnc_get_updatefw_password", R"("secret")"), R"x("(redacted)")x");
  EXPECT_EQ(redacted("hnc_get_updatefw_password", R"("")"), R"("")") << "there is none";
  EXPECT_EQ(
      redacted("hnc_get_hne_table_entry", R"({"serial_number":"secret","status":2,"rssi":null})"),
      R"x({"status":2,"serial_number":"(redacted)","rssi":null})x");
  EXPECT_EQ(redacted("wlan_get_retransmission_metric", "5"), "5");
  EXPECT_EQ(redacted("wlan_get_wps_result_status", R"("Idle")"), R"("Idle")");
}

TEST(Redact, WhatNothingIsSaidOfIsLeftOutAndCounted) {
  redaction state;
  EXPECT_EQ(redacted(state, "wlan_get_ap_scan_result", R"({"driver_data":"5ec4e7","networks":[]})"),
            R"({"networks":[]})");
  EXPECT_EQ(state.left_out, 1u);
  nlohmann::ordered_json answer = {{"return_code", 0}, {"value", "secret"}};
  redact(*lookup_name("wlan_get_ssid"), answer, state);
  EXPECT_EQ(answer.dump(), R"({"return_code":0})");
  EXPECT_EQ(state.left_out, 2u);
}

TEST(Redact, AddressesHaveTheSameOtherNameEverywhere) {
  redaction state;
  const char* extender =
      R"({"mac_address":"00-11-22-AA-BB-CC","ip_address":"192.168.1.7","uplink_mac_address":"00:11:22:aa:bb:cd"})";
  EXPECT_EQ(redacted(state, "hnc_get_hne_table_entry", extender),
            R"({"mac_address":"02:00:00:00:00:01","ip_address":"198.18.0.1",)"
            R"("uplink_mac_address":"02:00:00:00:00:02"})");
  const char* station = R"({"mac_address":"00:11:22:aa:bb:cc"})";
  EXPECT_EQ(redacted(state, "wlan_get_na_sta_report", station),
            R"({"mac_address":"02:00:00:00:00:01"})");
  for (const char* nobody : {"00:00:00:00:00:00", "ff:ff:ff:ff:ff:ff", ""}) {
    const std::string same = std::string("{\"mac_address\":\"") + nobody + "\"}";
    EXPECT_EQ(redacted(state, "wlan_get_na_sta_report", same.c_str()), same);
  }
  EXPECT_EQ(redacted(state, "wlan_get_na_sta_report", R"({"mac_address":"a secret of 17 ch"})"),
            R"x({"mac_address":"(redacted)"})x")
      << "what is no address is not passed on for one";
}

TEST(Redact, AnAddressIsReplacedByOneOfItsKind) {
  redaction state;
  const auto other = [&state](const std::string& ip) {
    const std::string record = "{\"ip_address\":\"" + ip + "\"}";
    return redacted(state, "hnc_get_hne_table_entry", record.c_str());
  };
  EXPECT_EQ(other("192.168.1.7"), R"({"ip_address":"198.18.0.1"})");
  EXPECT_EQ(other("fe80::1"), R"({"ip_address":"2001:db8::1"})");
  EXPECT_EQ(other("192.168.1.8"), R"({"ip_address":"198.18.0.2"})");
  EXPECT_EQ(other("0.0.0.0"), R"({"ip_address":"0.0.0.0"})") << "nobody's";
}

TEST(Redact, NumbersGivenAsTextStay) {
  EXPECT_EQ(redacted("hnc_get_updatefw_time", R"("03:00")"), R"("03:00")");
  EXPECT_EQ(redacted("wlan_get_hnc_replicate_radio", R"("1")"), R"("1")");
  EXPECT_EQ(redacted("hnc_get_hne_table_entry", R"({"software_version":"2.3.9"})"),
            R"({"software_version":"2.3.9"})");
  for (const char* other : {R"("tonight")", R"("10.0.0.7")", R"("::1")", R"("004912345678")"})
    EXPECT_EQ(redacted("hnc_get_updatefw_time", other), R"("name-1")") << other;
}

TEST(Redact, NamesAreTheSameOtherNameEverywhere) {
  redaction state;
  EXPECT_EQ(redacted(state, "hnc_get_hne_table_entry",
                     R"({"device_name":"\\xff","device_name_escaped":true,"model_name":"E1"})"),
            R"({"device_name":"name-1","model_name":"name-2"})");
  EXPECT_EQ(redacted(state, "hnc_get_supportedhnemodelname", R"("E1")"), R"("name-2")");
}

TEST(Redact, AFailureIsKept) {
  redaction state;
  nlohmann::ordered_json answer = {{"return_code", -1}};
  redact(*lookup_name("wlan_get_wps_uuid"), answer, state);
  EXPECT_EQ(answer.dump(), R"({"return_code":-1})");
}
