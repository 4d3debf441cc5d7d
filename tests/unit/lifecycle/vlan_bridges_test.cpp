#include "lifecycle/vlan_bridges.h"

#include <gtest/gtest.h>

#include "lifecycle/lifecycle_support.h"
#include "support/gateway.h"
#include "unit_support.h"

static void set_vlans(const std::string& ids24, const std::string& ids5 = "0;0;0;0;0;0;0;0") {
  set_profile_value(kProfile24, "VLAN_ID", ids24);
  set_profile_value(kProfile5, "VLAN_ID", ids5);
}

// Bridges and VLAN devices, one per line.
static std::string devices() {
  return run("ls /sys/class/net | grep -E '^br|^eth0\\.' | sort");
}

TEST(VlanBridges, IdsFromTwoTo4095AreBridgedAndTheDeviceOfTwoStays) {
  set_vlans("1;4094;2;4096;-5;4095;0;0");
  wifi_setupVlanBridges();
  EXPECT_EQ(devices(), "br0\nbr1\nbr2\neth0.2\neth0.4094\n");
  EXPECT_EQ(bridge_members("br0"), "eth0.4094\nra1\n");
  EXPECT_EQ(bridge_members("br1"), "eth0.2\nra2\n");
  EXPECT_EQ(bridge_members("br2"), "ra5\n") << "the kernel has no device for the last id";
  EXPECT_EQ(interfaces_up("br.|eth0\\..*"), "br0\nbr1\nbr2\neth0.2\neth0.4094\n");
  wifi_teardownVlanBridges();
  EXPECT_EQ(devices(), "br0\neth0.2\n");
  EXPECT_EQ(bridge_members("br0"), "");
  EXPECT_EQ(interfaces_up("br0"), "");
}

TEST(VlanBridges, GroupSpansBothRadios) {
  set_vlans("10;20;0;0;0;0;0;10", "20;10;0;0;0;0;0;30");
  wifi_setupVlanBridges();
  EXPECT_EQ(bridge_members("br0"), "eth0.10\nra0\nra7\nra9\n");
  EXPECT_EQ(bridge_members("br1"), "eth0.20\nra1\nra8\n");
  EXPECT_EQ(bridge_members("br2"), "eth0.30\nra15\n");
}

TEST(VlanBridges, SingleBandBoardHasEightPositions) {
  pretend_single_band();
  set_vlans("0;0;0;0;0;0;0;10", "10;20;0;0;0;0;0;0");
  wifi_setupVlanBridges();
  EXPECT_EQ(devices(), "br0\neth0.10\n");
  EXPECT_EQ(bridge_members("br0"), "eth0.10\nra7\n");
}

TEST(VlanBridges, TeardownFollowsTheTableOfAllSetupsNotTheProfile) {
  set_vlans("10;0;0;0;0;0;0;0");
  wifi_setupVlanBridges();
  set_vlans("0;20;0;0;0;0;0;0");
  wifi_setupVlanBridges();
  EXPECT_EQ(bridge_members("br0"), "eth0.10\neth0.20\nra0\nra1\n");
  set_vlans("0;0;0;0;0;0;0;0");
  wifi_teardownVlanBridges();
  EXPECT_EQ(devices(), "br0\n") << "10 from the first setup, 20 from the second";
}

TEST(VlanBridges, UdmaLeavesSetupAndTeardownAlone) {
  set_vlans("10;20;0;0;0;0;0;0");
  wifi_setupVlanBridges();
  const std::string before = devices();
  EXPECT_EQ(before, "br0\nbr1\neth0.10\neth0.20\n");
  set_profile_value(kProfile24, "UdmaEnable", "1");
  wifi_teardownVlanBridges();
  EXPECT_EQ(devices(), before);
  set_vlans("10;20;30;0;0;0;0;0");
  wifi_setupVlanBridges();
  EXPECT_EQ(devices(), before);
  // The value is longer than the teardown reads, so the teardown goes on.
  set_profile_value(kProfile24, "UdmaEnable", "00001");
  errors_of(wifi_teardownVlanBridges);
  EXPECT_EQ(devices(), "br0\n");
}
