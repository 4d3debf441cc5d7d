// VLAN interfaces and bridges, made through the kernel's requests and seen by ip and
// bridge.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/if_bridge.h>
#include <linux/if_vlan.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "inside.h"

static int on_socket(unsigned long request, void* argument) {
  int fd = socket(AF_INET, SOCK_STREAM, 0);
  int error = ioctl(fd, request, argument) < 0 ? errno : 0;
  close(fd);
  return error;
}

static int vlan(const char* device, int value, int command) {
  vlan_ioctl_args arguments = {};
  arguments.cmd = command;
  strncpy(arguments.device1, device, sizeof arguments.device1 - 1);
  arguments.u.VID = value;
  return on_socket(SIOCSIFVLAN, &arguments);
}

static std::string read_mac(const std::string& name) {
  return run("cat /sys/class/net/" + name + "/address").output;
}

static bool exists(const char* name) {
  return if_nametoindex(name) != 0;
}

static int bridge(unsigned long op, const char* name) {
  unsigned long arguments[] = {op, reinterpret_cast<unsigned long>(name), 0};
  return on_socket(SIOCSIFBR, arguments);
}

static int bridge_port(unsigned long op, const char* name, const char* port) {
  unsigned long arguments[] = {op, if_nametoindex(port), 0, 0};
  ifreq request = {};
  strncpy(request.ifr_name, name, IFNAMSIZ - 1);
  request.ifr_data = reinterpret_cast<char*>(arguments);
  return on_socket(SIOCDEVPRIVATE, &request);
}

TEST(Vlan, IsAddedAndDeleted) {
  EXPECT_EQ(vlan("eth0", 10, ADD_VLAN_CMD), 0);
  EXPECT_NE(run("ip -o link show eth0.10").output.find("state DOWN"), std::string::npos);
  EXPECT_EQ(read_mac("eth0.10"), read_mac("eth0"));
  EXPECT_EQ(run("ip link set eth0.10 up").status, 0);
  EXPECT_NE(run("ip -o link show eth0.10").output.find("LOWER_UP"), std::string::npos);
  EXPECT_EQ(vlan("eth0.10", 0, DEL_VLAN_CMD), 0);
  EXPECT_FALSE(exists("eth0.10"));
}

TEST(Vlan, TheJournalTellsCommandDeviceAndId) {
  EXPECT_EQ(vlan("eth0", 20, ADD_VLAN_CMD), 0);
  auto added = journal_entries().back();
  EXPECT_EQ(added["name"], "vlan");
  EXPECT_EQ(added["request"], "0x8983");
  EXPECT_EQ(added["command"], "add");
  EXPECT_EQ(added["device"], "eth0");
  EXPECT_EQ(added["id"], "20");
  EXPECT_EQ(added["result"], 0);
  EXPECT_EQ(vlan("eth0.20", 1, DEL_VLAN_CMD), 0);
  auto deleted = journal_entries().back();
  EXPECT_EQ(deleted["command"], "delete");
  EXPECT_EQ(deleted["device"], "eth0.20");
  EXPECT_FALSE(deleted.contains("id"));
}

TEST(Vlan, TheKernelsErrors) {
  EXPECT_EQ(vlan("eth7", 10, ADD_VLAN_CMD), ENODEV);
  EXPECT_EQ(vlan("eth0", 4095, ADD_VLAN_CMD), ERANGE);
  EXPECT_EQ(vlan("eth0", 10, ADD_VLAN_CMD), 0);
  EXPECT_EQ(vlan("eth0", 10, ADD_VLAN_CMD), EEXIST);
  EXPECT_EQ(vlan("eth0", 0, DEL_VLAN_CMD), EINVAL);
  EXPECT_EQ(vlan("eth0.11", 0, DEL_VLAN_CMD), ENODEV);
  EXPECT_EQ(vlan("eth0", 0, 77), EOPNOTSUPP);
  EXPECT_EQ(on_socket(SIOCSIFVLAN, reinterpret_cast<void*>(16)), EFAULT);
  vlan_ioctl_args arguments = {};
  EXPECT_EQ(ioctl(open("/dev/null", O_RDONLY), SIOCSIFVLAN, &arguments), -1);
  EXPECT_EQ(errno, ENOTTY);
}

TEST(Vlan, TellsWhatItIsOnTopOf) {
  EXPECT_EQ(vlan("eth0", 33, ADD_VLAN_CMD), 0);
  vlan_ioctl_args arguments = {};
  strcpy(arguments.device1, "eth0.33");
  arguments.cmd = GET_VLAN_REALDEV_NAME_CMD;
  EXPECT_EQ(on_socket(SIOCSIFVLAN, &arguments), 0);
  EXPECT_STREQ(arguments.u.device2, "eth0");
  arguments.cmd = GET_VLAN_VID_CMD;
  EXPECT_EQ(on_socket(SIOCSIFVLAN, &arguments), 0);
  EXPECT_EQ(arguments.u.VID, 33);
}

TEST(Vlan, OneThatWasDeletedByOtherMeansCanBeMadeAgain) {
  EXPECT_EQ(vlan("eth0", 12, ADD_VLAN_CMD), 0);
  EXPECT_EQ(run("ip link del eth0.12").status, 0);
  EXPECT_EQ(vlan("eth0.12", 0, DEL_VLAN_CMD), ENODEV);
  EXPECT_EQ(vlan("eth0", 12, ADD_VLAN_CMD), 0);
  EXPECT_TRUE(exists("eth0.12"));
}

TEST(Vlan, CanBeMadeToFail) {
  ASSERT_EQ(run("gwbox fail vlan ENOPKG").status, 0);
  EXPECT_EQ(vlan("eth0", 10, ADD_VLAN_CMD), ENOPKG);
  EXPECT_FALSE(exists("eth0.10"));
  EXPECT_EQ(vlan("eth0", 10, ADD_VLAN_CMD), 0);
}

TEST(Bridge, TiesAVlanAndARadioTogether) {
  ASSERT_EQ(bridge(BRCTL_ADD_BRIDGE, "br0"), 0);
  EXPECT_EQ(bridge(BRCTL_ADD_BRIDGE, "br0"), EEXIST);
  ASSERT_EQ(vlan("eth0", 10, ADD_VLAN_CMD), 0);
  EXPECT_EQ(bridge_port(BRCTL_ADD_IF, "br0", "eth0.10"), 0);
  EXPECT_EQ(bridge_port(BRCTL_ADD_IF, "br0", "ra0"), 0);
  ASSERT_EQ(run("ip link set br0 up && ip link set eth0.10 up && ip link set ra0 up").status, 0);
  std::string ports = run("bridge link show").output;
  EXPECT_NE(ports.find("eth0.10"), std::string::npos) << ports;
  EXPECT_NE(ports.find("ra0"), std::string::npos) << ports;
  EXPECT_NE(run("ip -o link show master br0").output.find("ra0"), std::string::npos);
  EXPECT_EQ(bridge_port(BRCTL_DEL_IF, "br0", "ra0"), 0);
  EXPECT_EQ(run("bridge link show").output.find("ra0"), std::string::npos);
  ASSERT_EQ(run("ip link set br0 down").status, 0);
  EXPECT_EQ(bridge(BRCTL_DEL_BRIDGE, "br0"), 0);
  EXPECT_FALSE(exists("br0"));
}
