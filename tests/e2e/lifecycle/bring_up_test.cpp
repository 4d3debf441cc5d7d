#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

TEST(Init, SwitchedOffRadioStaysDown) {
  set_profile_value("/tmp/mt76xx_24.dat", "RadioOn", "0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(interfaces_up("ra[0-7]"), "");
  EXPECT_EQ(interfaces_up("ra(8|9|1[0-5])").empty(), board() == "mt7603");
}

// The affinities that were written, one per line: interrupt and mask.
static std::string affinities() {
  return run(
      "jq -r 'select(.name == \"procfs\") | (.path | split(\"/\")[3]) + \" \" + .text'"
      " /run/gwbox/journal.jsonl");
}

TEST(Init, SwitchedOffFiveGigahertzRadioStopsNeitherAffinitiesNorCompanions) {
  if (board() == "mt7603") GTEST_SKIP() << "has one radio";
  set_profile_value("/tmp/mt76xx_5.dat", "RadioOn", "0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(interfaces_up("ra(8|9|1[0-5])"), "");
  EXPECT_TRUE(wait_until([] { return run("pgrep -xc mtk_ctrl") == "1\n"; }));
  const std::string expected = board() == "mt7615" ? "66 1\n30 1\n31 1\n65 2\n" : "31 2\n";
  EXPECT_TRUE(wait_until([&] { return affinities() == expected; })) << run("gwbox log");
}

TEST(Init, OnlyEnabledBssesComeUp) {
  set_profile_value("/tmp/mt76xx_24.dat", "BssEnabled", "0;1;0;1;0;0;0;0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(interfaces_up("ra[0-7]"), "ra1\nra3\n");
}

TEST(Init, BssesOfOneVlanShareABridgeAndResetLeavesBr0) {
  set_profile_value("/tmp/mt76xx_24.dat", "VLAN_ID", "10;0;10;20;1;4096;0;0");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(bridge_members("br0"), "eth0.10\nra0\nra2\n");
  EXPECT_EQ(bridge_members("br1"), "eth0.20\nra3\n");
  EXPECT_FALSE(exists("/sys/class/net/br2"));
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(exists("/sys/class/net/br0"));
  EXPECT_FALSE(exists("/sys/class/net/br1"));
  EXPECT_FALSE(exists("/sys/class/net/eth0.10"));
}

TEST(Init, UdmaLeavesVlansAlone) {
  set_profile_value("/tmp/mt76xx_24.dat", "VLAN_ID", "10;0;10;20;1;4096;0;0");
  set_profile_value("/tmp/mt76xx_24.dat", "UdmaEnable", "1");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_FALSE(exists("/sys/class/net/br0"));
}

TEST(Init, ChannelUtilizationIsRefusedOnTheFirstInitWithTheController) {
  write_file("/nvram/hnc_enable", "");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_errors("wlan_setChannelUtilizationEnable dirver isn't inited. \n "), 2)
      << daemon_errors();
}

TEST(Init, WithoutTheControllersMarkerThatIsReported) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(count_errors("wifi_init wifi_init HNC Process is not running \n"), 1)
      << daemon_errors();
}

TEST(Restart, CyclesOnlyTheInterfacesOfItsRadio) {
  if (board() == "mt7603") GTEST_SKIP() << "has one radio";
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  run("ip link set ra7 up; ip link set ra14 up");
  EXPECT_EQ(call_for_code(kRestart, xdr_word(9)), 0);
  ASSERT_TRUE(wait_for_trace("5GHz radio restarted\n"));
  EXPECT_NE(interfaces_up("ra7"), "");
  EXPECT_EQ(interfaces_up("ra14"), "") << "not enabled, so not raised again";
  EXPECT_TRUE(wait_until([] { return exists("/tmp/wifi_restart"); }));
}

TEST(SetEnable, WritesTheFieldAndAnswersZero) {
  start_lifecycle_daemon();
  EXPECT_EQ(call_for_code(10, xdr_word(4) + xdr_word(0)), 0);
  EXPECT_EQ(run("grep ^BssEnabled= /tmp/mt76xx_24.dat | cut -d= -f2 | cut -d';' -f4"), "0\n");
  EXPECT_EQ(call_for_code(10, xdr_word(17) + xdr_word(1)), 0);
  EXPECT_EQ(count_errors("wlan_setEnable Index 17 should be range from 1 to 16\n"), 1)
      << daemon_errors();
}

TEST(Calibration, RunsReportsAndUndoes) {
  // The self-test sleeps twice for two seconds, but this daemon's sleeps end at once.
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_EQ(prek_status(), 3);
  if (board() != "mt7615") return;
  EXPECT_EQ(call_for_code(kUndoPrek, xdr_word(1)), -1);
  EXPECT_EQ(call_for_code(kSetPrek, xdr_word(1) + xdr_word(1)), 0);
  EXPECT_EQ(run("ls /nvram/backup_EEPROM_CALDATA"), "MT7615_EEPROM_2G.bin\nMT7615_EEPROM_5G.bin\n");
  EXPECT_EQ(prek_status(), 2);
  run("mv /nvram/MT7615_CALDATA2.bin /tmp/");
  EXPECT_EQ(prek_status(), -1) << "calibrated, but a result is missing";
  run("mv /tmp/MT7615_CALDATA2.bin /nvram/");
  EXPECT_EQ(call_for_code(kUndoPrek, xdr_word(1)), 0);
  EXPECT_FALSE(exists("/nvram/backup_EEPROM_CALDATA"));
  EXPECT_FALSE(exists("/nvram/MT7615_CALDATA1.bin"));
  write_file("/nvram/MT7615_CALDATA1.bin", "1");
  write_file("/nvram/MT7615_CALDATA2.bin", "2");
  EXPECT_EQ(prek_status(), 0);
  EXPECT_EQ(call_for_code(kSetPrek, xdr_word(1) + xdr_word(1)), -1) << "results without a backup";
}
