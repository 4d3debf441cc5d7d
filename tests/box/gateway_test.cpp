// What a program finds in a gateway.
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "inside.h"

TEST(Gateway, RadioInterfacesAreThereAndDown) {
  for (int i = 0; i < 16; ++i) {
    std::string name = "ra" + std::to_string(i);
    run_result shown = run("ip -o link show " + name);
    EXPECT_EQ(shown.status, 0) << shown.output;
    EXPECT_NE(shown.output.find("state DOWN"), std::string::npos) << shown.output;
    EXPECT_EQ(shown.output.find(",UP"), std::string::npos) << shown.output;
  }
  EXPECT_NE(run("ip link show ra16").status, 0);
}

TEST(Gateway, ARadioInterfaceCanBeBroughtUp) {
  EXPECT_EQ(run("ip link set ra8 up").status, 0);
  run_result shown = run("ip -o link show ra8");
  EXPECT_NE(shown.output.find("LOWER_UP"), std::string::npos) << shown.output;
}

TEST(Gateway, LanSideHasItsAddress) {
  EXPECT_NE(run("ip -o -4 addr show eth0").output.find("192.168.254.254/24"), std::string::npos);
  EXPECT_NE(run("ip -o link show eth0").output.find("LOWER_UP"), std::string::npos);
  EXPECT_NE(run("ip -o link show lo").output.find("LOWER_UP"), std::string::npos);
}

TEST(Gateway, PortmapperAnswers) {
  run_result list = run("rpcinfo -p 127.0.0.1");
  EXPECT_EQ(list.status, 0) << list.output;
  EXPECT_NE(list.output.find("portmapper"), std::string::npos) << list.output;
  EXPECT_EQ(run("rpcinfo -T udp 192.168.254.254 100000 2").status, 0);
}

TEST(Gateway, PortmapperHasItsName) {
  run_result found = run("pgrep -l portmap");
  EXPECT_EQ(found.status, 0);
  EXPECT_NE(found.output.find(" portmap\n"), std::string::npos) << found.output;
}

TEST(Gateway, PciBusShowsBothRadios) {
  std::string devices = run("cat /proc/bus/pci/devices").output;
  EXPECT_NE(devices.find("\t14c37603\t"), std::string::npos) << devices;
  EXPECT_NE(devices.find("\t14c37612\t"), std::string::npos) << devices;
  EXPECT_EQ(devices.find("14c37615"), std::string::npos) << devices;
}

TEST(Gateway, DirectoriesOfAGateway) {
  EXPECT_EQ(run("hostname").output, "gateway\n");
  EXPECT_EQ(run("readlink /var/run").output, "/run\n");
  for (const char* dir : {"/tmp", "/nvram", "/etc/Wireless", "/run"}) {
    EXPECT_EQ(run(std::string("touch ") + dir + "/written").status, 0) << dir;
  }
}

// A profile follows the rules of its format and has the keys that the driver and the
// per-BSS lists need.
static void check_profile(const std::string& path) {
  std::ifstream file(path);
  ASSERT_TRUE(file.is_open()) << path;
  std::set<std::string> keys;
  std::string line;
  int lines = 0;
  for (; std::getline(file, line); ++lines) {
    EXPECT_LT(line.size(), 250u) << line;
    size_t equals = line.find('=');
    if (lines < 2 || equals == std::string::npos) continue;
    EXPECT_TRUE(keys.insert(line.substr(0, equals)).second) << "twice: " << line;
  }
  EXPECT_GE(lines, 280) << path;
  EXPECT_LE(lines, 350) << path;
  for (int i = 1; i <= 8; ++i) {
    EXPECT_TRUE(keys.contains("SSID" + std::to_string(i)));
    EXPECT_TRUE(keys.contains("WPAPSK" + std::to_string(i)));
  }
  for (const char* key : {"Channel", "WirelessMode", "AuthMode", "EncrypType", "HideSSID",
                          "RADIUS_Server", "WscConfMode", "VLANID", "BSSHNCService"}) {
    EXPECT_TRUE(keys.contains(key)) << key;
  }
}

TEST(Gateway, ProfilesAreInPlace) {
  check_profile("/tmp/mt76xx_24.dat");
  check_profile("/tmp/mt76xx_5.dat");
}

TEST(Gateway, OneBackhaulBssOnTheFiveGigahertzBand) {
  EXPECT_EQ(run("grep ^BSSHNCService= /tmp/mt76xx_24.dat").output,
            "BSSHNCService=0;0;0;0;0;0;0;0\n");
  EXPECT_EQ(run("grep ^BSSHNCService= /tmp/mt76xx_5.dat").output,
            "BSSHNCService=0;0;0;0;0;0;0;7\n");
}
