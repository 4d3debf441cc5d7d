#include <gtest/gtest.h>
#include <signal.h>

#include "support/daemon.h"
#include "support/files.h"

// The client against the real daemon: outputs and exit statuses.

static std::string wificonf(const std::string& words, int* status) {
  return run("wificonf " + words + " 2>&1", status);
}

TEST(Wificonf, PingAnswers) {
  start_daemon();
  int status = -1;
  wificonf("ping", &status);
  EXPECT_EQ(status, 0);
}

TEST(Wificonf, SetsAnSsidWithDashesInTheName) {
  start_daemon();
  int status = -1;
  EXPECT_EQ(wificonf("wlan-set-ssid 3 'Living room'", &status), "ok\n");
  EXPECT_EQ(status, 0);
  EXPECT_NE(read_file("/tmp/mt76xx_24.dat").find("\nSSID3=Living room\n"), std::string::npos);
}

TEST(Wificonf, FailureCodeIsStatusOne) {
  start_daemon();
  int status = -1;
  const std::string said = wificonf("--force wlan_set_ssid 17 x", &status);
  EXPECT_EQ(status, 1);
  EXPECT_NE(said.find("-1"), said.npos) << said;
}

TEST(Wificonf, BadArgumentIsStatusTwoAndSendsNothing) {
  start_daemon();
  write_file("/tmp/wlandbg", "");
  int status = -1;
  for (const char* call :
       {"wlan_set_ssid three x", "wlan_set_ssid 17 x", "wlan_set_wpa_encryption_modes 1 AES",
        "wlan_set_key_passphrase 1 1 12345", "wlan_set_hnc_steer_sta_mac_address 1 junk"}) {
    wificonf(call, &status);
    EXPECT_EQ(status, 2) << call;
  }
  EXPECT_EQ(daemon_output(), "");
}

TEST(Wificonf, WhatDoesNothingIsStatusFive) {
  start_daemon();
  int status = -1;
  const std::string said = wificonf("wlan_set_channel 9 36", &status);
  EXPECT_EQ(status, 5);
  EXPECT_NE(said.find("deliberately does nothing"), said.npos) << said;
  EXPECT_EQ(wificonf("--inert-ok wlan_set_channel 9 36", &status), "ok\n");
  EXPECT_EQ(status, 0);
}

TEST(Wificonf, UnknownNumberIsRefusedByTheDaemon) {
  start_daemon();
  int status = -1;
  const std::string said = wificonf("20", &status);
  EXPECT_EQ(status, 3);
  EXPECT_NE(said.find("unavailable"), said.npos) << said;
}

TEST(Wificonf, WithoutADaemonItSaysSoAtOnce) {
  int status = -1;
  const std::string said = wificonf("wlan_get_channel 1", &status);
  EXPECT_EQ(status, 3);
  EXPECT_NE(said.find("nothing listens"), said.npos) << said;
}

TEST(Wificonf, SilentDaemonIsATimeoutAfterOneDatagram) {
  const pid_t supervisor = start_daemon();
  const pid_t child = service_child(supervisor);
  kill(child, SIGSTOP);
  int status = -1;
  const std::string said = wificonf("--timeout 0.3 wlan_get_channel 1", &status);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  write_file("/tmp/wlandbg", "");
  kill(child, SIGCONT);
  ASSERT_TRUE(wait_until(daemon_answers));
  const std::string trace = daemon_output();
  const size_t first = trace.find(": index 1\n");
  ASSERT_NE(first, trace.npos) << trace;
  EXPECT_EQ(trace.find(": index 1\n", first + 1), trace.npos) << "the request was sent again";
}

TEST(Wificonf, JsonCarriesCodeAndValue) {
  start_daemon();
  int status = -1;
  const std::string said = wificonf("--json wlan_get_bss_hnc_service 1", &status);
  EXPECT_EQ(status, 0);
  EXPECT_NE(said.find("\"return_code\":0"), said.npos) << said;
  EXPECT_NE(said.find("\"value\":0"), said.npos) << said;
}
