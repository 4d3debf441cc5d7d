#include "sys/netdev.h"

#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/resource.h>

#include "support/files.h"

// On a link of the test's own.
static void make_link() {
  run("ip link add test0 type veth peer name test1");
}

static std::string link_flags() {
  return run("ip -br link show test0 | sed 's/.*<//; s/>.*//'");
}

static std::string address() {
  return run("ip -br -4 addr show test0 | awk '{print $3}'");
}

TEST(Interface, RaisesAndTakesDown) {
  make_link();
  EXPECT_EQ(if_ioctl("test0", nullptr, nullptr, 0x1041, 1), 1u);
  EXPECT_NE(link_flags().find("UP"), std::string::npos);
  EXPECT_EQ(if_ioctl("test0", nullptr, nullptr, 0x1000, 0), 1u);
  EXPECT_EQ(link_flags().find("UP"), std::string::npos) << link_flags();
  EXPECT_NE(link_flags().find("MULTICAST"), std::string::npos) << link_flags();
}

TEST(Interface, MissingOneCountsAsDoneWithoutAWord) {
  catch_stream(2);
  EXPECT_EQ(if_ioctl("nosuch0", "10.0.0.1", "255.0.0.0", 0x1041, 1), 1u);
  EXPECT_EQ(caught_stream(2), "");
}

TEST(Interface, NoNameDoesNothing) {
  EXPECT_EQ(if_ioctl(nullptr, nullptr, nullptr, 0, 1), 0u);
}

TEST(Interface, AddressAndMaskAreSet) {
  make_link();
  EXPECT_EQ(if_ioctl("test0", "10.9.8.7", "255.255.0.0", 0x1041, 1), 1u);
  EXPECT_EQ(address(), "10.9.8.7/16\n");
}

TEST(Interface, NoMaskGoesWithTheZeroAddress) {
  make_link();
  catch_stream(2);
  // A mask without an address would be refused.
  EXPECT_EQ(if_ioctl("test0", "0.0.0.0", "255.255.0.0", 0x1041, 1), 1u);
  EXPECT_EQ(caught_stream(2), "");
  EXPECT_EQ(address(), "");
}

TEST(Interface, RefusedMaskIsReported) {
  make_link();
  catch_stream(2);
  EXPECT_EQ(if_ioctl("test0", "10.9.8.7", "255.0.255.0", 0x1041, 1), 0u);
  EXPECT_NE(caught_stream(2).find("if_ioctl ioctl to socket failed - test0 SIOCSIFNETMASK\n"),
            std::string::npos);
}

TEST(Interface, MissingSocketIsReported) {
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  catch_stream(2);
  const rlimit soft = {0, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &soft);
  const unsigned interface = if_ioctl("lo", nullptr, nullptr, 0, 1);
  const unsigned bridge = bridge_ioctl("br9", nullptr, kBridgeAdd);
  const unsigned vlan = vconfig_ioctl("eth0", 5, kVlanAdd);
  setrlimit(RLIMIT_NOFILE, &before);
  const std::string said = caught_stream(2);
  EXPECT_EQ(interface + bridge + vlan, 0u);
  for (const char* function : {"if_ioctl", "bridge_ioctl", "vconfig_ioctl"}) {
    EXPECT_NE(said.find(std::string(function) + " failed to grab socket\n"), said.npos) << said;
  }
}

TEST(Bridge, IsMadeFilledEmptiedAndDeleted) {
  make_link();
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeAdd), 1u);
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeAdd), 0u) << "it is there";
  EXPECT_EQ(bridge_ioctl("br9", "test0", kBridgeAddInterface), 1u);
  EXPECT_EQ(run("ls /sys/class/net/br9/brif"), "test0\n");
  EXPECT_EQ(bridge_ioctl("br9", "test0", kBridgeDeleteInterface), 1u);
  EXPECT_EQ(run("ls /sys/class/net/br9/brif"), "");
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeDelete), 1u);
  EXPECT_FALSE(exists("/sys/class/net/br9"));
}

TEST(Bridge, OtherRequestsTouchNothing) {
  catch_stream(2);
  for (const int op : {0, 1, 6, -1})
    EXPECT_EQ(bridge_ioctl("br9", "lo", op), 0u) << op;
  EXPECT_EQ(bridge_ioctl(nullptr, nullptr, kBridgeAdd), 0u);
  EXPECT_EQ(bridge_ioctl("br9", nullptr, kBridgeAddInterface), 0u);
  EXPECT_EQ(bridge_ioctl("br9", "nosuch0", kBridgeAddInterface), 0u);
  EXPECT_EQ(caught_stream(2), "");
  EXPECT_FALSE(exists("/sys/class/net/br9"));
}

TEST(Vlan, DeviceIsMadeAndDeleted) {
  EXPECT_EQ(vconfig_ioctl("eth0", 5, kVlanAdd), 1u);
  EXPECT_TRUE(exists("/sys/class/net/eth0.5"));
  catch_stream(2);
  EXPECT_EQ(vconfig_ioctl("eth0", 5, kVlanAdd), 0u) << "it is there";
  EXPECT_EQ(caught_stream(2), "");
  EXPECT_EQ(vconfig_ioctl("eth0.5", 5, kVlanDelete), 1u);
  EXPECT_FALSE(exists("/sys/class/net/eth0.5"));
}
