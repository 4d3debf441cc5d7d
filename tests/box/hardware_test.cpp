// The files through which a gateway's software reaches its hardware and firmware.
#include <gtest/gtest.h>
#include <unistd.h>

#include "inside.h"
#include "watch.h"

static std::vector<nlohmann::json> writes() {
  std::vector<nlohmann::json> found;
  for (const auto& entry : journal_entries()) {
    if (entry["name"] == "sysfs" || entry["name"] == "procfs") found.push_back(entry);
  }
  return found;
}

TEST(Sysfs, EveryWriteIsRecordedInOrder) {
  const std::string pci = "/sys/bus/pci/";
  const std::vector<std::pair<std::string, std::string>> expected = {
      {pci + "slots/0000:02:00.0/power", "0"},
      {pci + "slots/0000:03:00.0/power", "0"},
      {pci + "rescan", "1"},
      {pci + "devices/0000:02:00.0/remove", "1"},
      {pci + "devices/0000:03:00.0/remove", "1"},
      {pci + "rescan", "1"},
      {pci + "slots/0000:02:00.0/power", "1"},
      {pci + "slots/0000:03:00.0/power", "1"},
      {pci + "slots/0000:03:00.0/power", "0"},
      {pci + "slots/0000:03:00.0/power", "1"}};
  std::string commands;
  for (const auto& [path, text] : expected)
    commands += "echo " + text + " > " + path + "\n";
  ASSERT_EQ(run(commands).status, 0);
  ASSERT_TRUE(wait_until([&] { return writes().size() >= expected.size(); }));
  auto found = writes();
  ASSERT_EQ(found.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(found[i]["path"], expected[i].first) << i;
    EXPECT_EQ(found[i]["text"], expected[i].second) << i;
  }
}

TEST(Sysfs, NothingIsLostHoweverFastItComes) {
  ASSERT_EQ(
      run("i=0; while [ $i -lt 500 ]; do echo $i > /sys/bus/pci/rescan; i=$((i+1)); done").status,
      0);
  ASSERT_TRUE(wait_until([] { return writes().size() >= 500; }));
  auto found = writes();
  for (size_t i = 0; i < 500; ++i)
    EXPECT_EQ(found[i]["text"], std::to_string(i));
}

TEST(Sysfs, AWriteIsInTheJournalBeforeARequestThatFollowsIt) {
  ASSERT_EQ(run("echo 1 > /sys/bus/pci/rescan; iwpriv ra0 set A=1").status, 0);
  EXPECT_EQ(journal_entries().front()["name"], "sysfs");
}

TEST(Interrupts, TheAffinityOfThePacketMoverCanBeSet) {
  ASSERT_EQ(run("INTRPT=`awk -F':' '/udma1/{print $1}' /proc/interrupts | sed 's/ //g'`; "
                "echo 2 > /proc/irq/$INTRPT/smp_affinity")
                .status,
            0);
  ASSERT_TRUE(wait_until([] { return writes().size() == 1; }));
  EXPECT_EQ(writes()[0]["name"], "procfs");
  EXPECT_EQ(writes()[0]["path"], "/proc/irq/31/smp_affinity");
  EXPECT_EQ(writes()[0]["text"], "2");
  EXPECT_EQ(run("cat /proc/irq/31/smp_affinity").output, "2\n");
}

TEST(Interrupts, AllOfTheBoardsAreThere) {
  for (const char* number : {"30", "31", "65", "66"}) {
    std::string file = std::string("/proc/irq/") + number + "/smp_affinity";
    EXPECT_EQ(run("echo 1 > " + file + " && cat " + file).output, "1\n");
  }
}

static void check_calibration(const std::string& path, unsigned chip, size_t size) {
  std::string image = read_file(path);
  ASSERT_EQ(image.size(), size) << path;
  EXPECT_EQ(static_cast<unsigned char>(image[0]), chip & 0xFF) << path;
  EXPECT_EQ(static_cast<unsigned char>(image[1]), chip >> 8) << path;
  EXPECT_EQ(image[0x52] & 0x2, 0) << "calibrated already: " << path;
}

TEST(Firmware, CalibrationDefaultsOfAllChips) {
  check_calibration("/etc/Wireless/7603AP/MT7603_EEPROM.bin", 0x7603, 1024);
  check_calibration("/etc/Wireless/7612AP/MT7612_EEPROM.bin", 0x7612, 512);
  check_calibration("/etc/Wireless/7615AP/MT7615_EEPROM.bin", 0x7615, 1024);
  EXPECT_EQ(run("ls /nvram").output, "");
  EXPECT_EQ(run("cp /etc/Wireless/7603AP/MT7603_EEPROM.bin /nvram/").status, 0);
}

TEST(Firmware, PowerTablesOfBothDomains) {
  std::string directory = "/etc/Wireless/7615AP/";
  for (std::string code : {"US", "CA", "BR", "DE", "FR", "GB", "JP"}) {
    EXPECT_NE(read_file(directory + "SingleSKU_FCC_" + code + ".dat").find("Ch11"),
              std::string::npos);
    EXPECT_NE(read_file(directory + "SingleSKU_BF_FCC_" + code + ".dat"),
              read_file(directory + "SingleSKU_FCC_" + code + ".dat"));
  }
  for (std::string code : {"EU", "IL", "AR"}) {
    EXPECT_NE(read_file(directory + "SingleSKU_ETSI_" + code + ".dat"), "");
    EXPECT_NE(read_file(directory + "SingleSKU_BF_ETSI_" + code + ".dat"), "");
    EXPECT_NE(read_file(directory + "SingleSKU_FCC_3_TxStream_" + code + ".dat"), "");
  }
  EXPECT_NE(read_file(directory + "l1profile.dat").find("INDEX0=MT7615"), std::string::npos);
}

TEST(Firmware, PowerTablesOfTheProfilesCountry) {
  std::string country = run("sed -n s/^CountryCode=//p /tmp/mt76xx_24.dat | tr -d '\\n'").output;
  ASSERT_EQ(country, "DE");
  for (const char* kind : {"FCC", "BF_FCC", "FCC_3_TxStream"}) {
    std::string table = std::string("SingleSKU_") + kind + "_" + country + ".dat";
    EXPECT_EQ(run("cp /etc/Wireless/7615AP/" + table + " /tmp/.copy").status, 0) << table;
  }
}

TEST(Firmware, TheGeneratorWritesAPowerTableAndRecordsItsCall) {
  ASSERT_EQ(run("/scripts/SKU_generator.sh 9 US FCC").status, 0);
  EXPECT_NE(read_file("/tmp/US_9.dat").find("Ch36 27"), std::string::npos);
  ASSERT_EQ(run("/scripts/SKU_generator.sh 1 EU ETSI").status, 0);
  EXPECT_NE(read_file("/tmp/EU_1.dat").find("Ch1 20"), std::string::npos);
  auto calls = records("/run/gwbox/sku_generator.jsonl");
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0]["number"], "9");
  EXPECT_EQ(calls[0]["country"], "US");
  EXPECT_EQ(calls[1]["domain"], "ETSI");
}

TEST(Firmware, TheMeshScriptStartsItsDaemonOnce) {
  ASSERT_EQ(run("/sbin/EasyMesh_openwrt.sh").status, 0);
  ASSERT_TRUE(wait_until([] { return run("pgrep -x bs20").status == 0; }));
  ASSERT_EQ(run("/sbin/EasyMesh_openwrt.sh").status, 0);
  EXPECT_EQ(run("pgrep -cx bs20").output, "1\n");
  EXPECT_EQ(records("/run/gwbox/easymesh.jsonl").size(), 2u);
  static_cast<void>(
      run("/bin/kill $(pgrep -f bs20 | awk '{print $1}')"));  // also ends its own shell
  EXPECT_TRUE(wait_until([] { return run("pgrep -x bs20").status != 0; }));
}
