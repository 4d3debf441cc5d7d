#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/wire.h"

static constexpr uint32_t kSetPolicy = 26;
static constexpr uint32_t kSetBasicEncryption = 34;
static constexpr uint32_t kSetBasicAuthentication = 36;
static constexpr uint32_t kSetWpaEncryption = 38;
static constexpr uint32_t kSetWpaAuthentication = 40;
static constexpr uint32_t kSetAdvertisement = 48;
static constexpr uint32_t kClearAccessList = 109;
static constexpr uint32_t kAddToAccessList = 110;
static constexpr uint32_t kDeleteFromAccessList = 111;
static constexpr uint32_t kSetRadiusServer = 189;

static int32_t set_text(uint32_t procedure, uint32_t bss, const std::string& text) {
  return call_for_code(procedure, xdr_word(bss) + xdr_text(text));
}

static bool traced(const std::string& text) {
  return daemon_output().find(text) != std::string::npos;
}

TEST(Security, EveryModeIsWrittenToTheFieldOfItsBss) {
  start_daemon();
  EXPECT_EQ(set_text(kSetWpaEncryption, 3, "TKIPandAESEncryption"), 1);
  EXPECT_EQ(set_text(kSetWpaAuthentication, 3, "WPAPSKWPA2PSK"), 1);
  EXPECT_EQ(set_text(kSetBasicEncryption, 10, "None"), 1);
  EXPECT_EQ(set_text(kSetBasicAuthentication, 10, "None"), 1);
  EXPECT_EQ(set_text(kSetRadiusServer, 2, "192.0.2.7"), 1);
  EXPECT_EQ(call_for_code(kSetAdvertisement, xdr_word(1) + xdr_word(0)), 0);
  EXPECT_EQ(profile_value(kProfile24, "EncrypType"), "AES;AES;TKIPAES;AES;NONE;NONE;NONE;AES");
  EXPECT_EQ(profile_value(kProfile24, "AuthMode"),
            "WPA2PSK;WPA2PSK;WPAPSKWPA2PSK;WPA2PSK;OPEN;OPEN;OPEN;WPA2PSK");
  EXPECT_EQ(profile_value(kProfile5, "EncrypType"), "AES;NONE;AES;AES;NONE;NONE;NONE;AES");
  EXPECT_EQ(profile_value(kProfile5, "AuthMode"),
            "WPA2PSK;OPEN;WPA2PSK;WPA2PSK;OPEN;OPEN;OPEN;WPA2PSK");
  EXPECT_EQ(profile_value(kProfile24, "RADIUS_Server"),
            "0.0.0.0;192.0.2.7;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0");
  EXPECT_EQ(profile_value(kProfile24, "HideSSID"), "1;0;0;0;0;0;0;1");
  // An unknown mode empties its field; the second time nothing changes.
  EXPECT_EQ(set_text(kSetBasicAuthentication, 1, "EAPAuthentication"), 1);
  EXPECT_EQ(set_text(kSetBasicAuthentication, 1, "EAPAuthentication"), 2);
  EXPECT_EQ(profile_value(kProfile24, "AuthMode"),
            ";WPA2PSK;WPAPSKWPA2PSK;WPA2PSK;OPEN;OPEN;OPEN;WPA2PSK");
}

// The security of an interface that has read its profile again, and whether it is hidden.
static std::string on_air(const std::string& interface) {
  run("ip link set " + interface + " down; ip link set " + interface + " up");
  return run("gwbox status --json | jq -c '.interfaces[] | select(.name == \"" + interface +
             "\") | [.security, .hidden]'");
}

TEST(Security, DriverUnderstandsWhatIsWritten) {
  start_daemon();
  EXPECT_EQ(on_air("ra0"), "[\"WPA2PSK/AES\",false]\n");
  EXPECT_EQ(set_text(kSetWpaEncryption, 1, "TKIPandAESEncryption"), 1);
  EXPECT_EQ(set_text(kSetWpaAuthentication, 1, "WPAPSKWPA2PSK"), 1);
  EXPECT_EQ(call_for_code(kSetAdvertisement, xdr_word(1) + xdr_word(0)), 0);
  EXPECT_EQ(on_air("ra0"), "[\"WPAPSKWPA2PSK/TKIPAES\",true]\n");
  EXPECT_EQ(set_text(kSetBasicEncryption, 9, "None"), 1);
  EXPECT_EQ(set_text(kSetBasicAuthentication, 9, "None"), 1);
  EXPECT_EQ(on_air("ra8"), "[\"OPEN/NONE\",false]\n");
}

TEST(Security, IndexOutsideTheBoardAnswersZeroAndSaysSo) {
  start_daemon();
  const std::string before = read_file(kProfile24) + read_file(kProfile5);
  for (const uint32_t bss : {0u, 17u, 0x80000000u, 0x7FFFFFFFu}) {
    for (const uint32_t procedure :
         {kSetBasicEncryption, kSetBasicAuthentication, kSetWpaEncryption, kSetWpaAuthentication}) {
      EXPECT_EQ(set_text(procedure, bss, "None"), 0) << procedure;
    }
    EXPECT_EQ(call_for_code(kSetAdvertisement, xdr_word(bss) + xdr_word(1)), 0);
  }
  EXPECT_EQ(read_file(kProfile24) + read_file(kProfile5), before);
  EXPECT_NE(daemon_errors().find("wlan_setWpaEncryptionModes Index 17 should be range from 1 to "
                                 "16\n"),
            std::string::npos)
      << daemon_errors();
}

TEST(Security, LongAndOddTextsAreNoProfileLines) {
  start_daemon();
  const std::string before = read_file(kProfile24);
  for (const std::string& text : {std::string("a;b"), std::string("a\nSSID1=b"),
                                  std::string(8000, 'a'), std::string("a\rb")}) {
    EXPECT_EQ(set_text(kSetRadiusServer, 1, text), 0) << text;
  }
  EXPECT_EQ(read_file(kProfile24), before);
  const std::string text = "%s%n$(touch /tmp/pwned)'";
  EXPECT_EQ(set_text(kSetRadiusServer, 1, text), 1);
  EXPECT_TRUE(profile_value(kProfile24, "RADIUS_Server").starts_with(text + ";0.0.0.0;"));
  EXPECT_FALSE(exists("/tmp/pwned"));
}

TEST(Security, SettersShowTheirInput) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  set_text(kSetWpaAuthentication, 1, "WPA2");
  call_for_code(kSetPolicy, xdr_word(1) + xdr_word(2));
  call_for_code(kAddToAccessList, xdr_word(1) + xdr_text("00:11:22:33:44:55") + xdr_text("phone"));
  EXPECT_TRUE(
      traced("wlan_set_wpa_authentication_modes_1_svc\033[0m  WLAN RPC server : "
             "[wpa_authentication_modes=WPA2]\n"));
  EXPECT_TRUE(traced("RPC wlan_setWpaBasicAuthenticationModes status=1, AuthMode=WPA2, index=1\n"));
  EXPECT_TRUE(traced(" WLAN RPC server : [policy=2]\n"));
  EXPECT_TRUE(traced("[mac_address=00:11:22:33:44:55][name=phone]\n")) << daemon_output();
}

TEST(Security, HostOfABackhaulBssIsToldOfAuthenticationAndAdvertisement) {
  set_profile_value(kProfile24, "BSSHNCService", "0;7;3;0;0;0;0;0");
  start_daemon({"LD_LIBRARY_PATH=" + host_library_directory()});
  set_text(kSetWpaAuthentication, 2, "WPA2PSK");
  set_text(kSetBasicAuthentication, 2, "None");
  set_text(kSetBasicAuthentication, 2, "EAPAuthentication");
  set_text(kSetWpaEncryption, 2, "AESEncryption");
  set_text(kSetWpaAuthentication, 1, "WPA2PSK");
  call_for_code(kSetAdvertisement, xdr_word(2) + xdr_word(1));
  EXPECT_EQ(read_file("/tmp/host_calls"), "2 4 WPA2PSK\n2 4 None\n2 3 1\n");
}

// Whether the scenario's station is on the interface.
static bool station_on(const std::string& interface) {
  return run("gwbox status").find("02:00:5e:00:00:01 " + interface) != std::string::npos;
}

TEST(AccessControl, ListAndPolicyDecideWhichStationsStay) {
  start_daemon();
  run("ip link set ra0 up");
  ASSERT_TRUE(wait_until([] { return station_on("ra0"); }));
  const std::string entry = xdr_word(1) + xdr_text("02:00:5e:00:00:01");
  EXPECT_EQ(call_for_code(kAddToAccessList, entry + xdr_text("phone")), 0);
  EXPECT_TRUE(station_on("ra0"));
  EXPECT_EQ(call_for_code(kSetPolicy, xdr_word(1) + xdr_word(2)), 0);
  EXPECT_TRUE(wait_until([] { return !station_on("ra0"); }));
  EXPECT_EQ(call_for_code(kDeleteFromAccessList, entry), 0);
  EXPECT_TRUE(wait_until([] { return station_on("ra0"); }));
  EXPECT_EQ(call_for_code(kSetPolicy, xdr_word(1) + xdr_word(1)), 0);
  EXPECT_TRUE(wait_until([] { return !station_on("ra0"); }));
  EXPECT_EQ(call_for_code(kAddToAccessList, entry + xdr_text("")), 0);
  EXPECT_TRUE(wait_until([] { return station_on("ra0"); }));
  EXPECT_EQ(call_for_code(kClearAccessList, xdr_word(1)), 0);
  EXPECT_TRUE(wait_until([] { return !station_on("ra0"); }));
}

TEST(AccessControl, WhatTheDriverRefusesFails) {
  start_daemon();
  EXPECT_EQ(call_for_code(kSetPolicy, xdr_word(1) + xdr_word(3)), -1);
  EXPECT_EQ(call_for_code(kSetPolicy, xdr_word(17) + xdr_word(1)), -1);
  EXPECT_EQ(call_for_code(kClearAccessList, xdr_word(0)), -1);
  for (const std::string& text :
       {std::string("no address"), std::string(""), std::string(8000, 'a')}) {
    EXPECT_EQ(call_for_code(kAddToAccessList, xdr_word(1) + xdr_text(text) + xdr_text("")), -1);
    EXPECT_EQ(call_for_code(kDeleteFromAccessList, xdr_word(1) + xdr_text(text)), -1);
  }
  EXPECT_TRUE(daemon_answers());
}
