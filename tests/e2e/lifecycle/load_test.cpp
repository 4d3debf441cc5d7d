#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/lifecycle.h"
#include "support/wire.h"

TEST(Faults, SequencesRunToTheirEndWithoutProfilesModulesPciListOrPgrep) {
  start_lifecycle_daemon({"PATH=/nonexistent"});
  run("mount -t tmpfs tmpfs /proc/bus/pci");
  ASSERT_FALSE(exists("/proc/bus/pci/devices"));
  run("rm -f /tmp/mt76xx_24.dat /tmp/mt76xx_5.dat; rm -rf /lib/modules/wifi/*.ko");
  queue_and_wait(kLoad, kLoaded);
  // Without the list, every board counts as one with only an MT7603.
  EXPECT_GT(count_traces("hasMTK7615\033[0m Unable to open file /proc/bus/pci/devices\n"), 0);
  EXPECT_EQ(count_errors("insert_module Can't mmap kernel module file\n"), 1) << daemon_errors();
  EXPECT_EQ(count_errors("wifi_load Failed to load the MT7603 AP driver\n"), 1);
  EXPECT_EQ(count_errors("AP driver\n"), 1);
  EXPECT_GT(count_errors("wifiprofile_getParam /tmp/mt76xx_24.dat does not exist\n"), 0);
  queue_and_wait(kInit, kInitialized);
  queue_and_wait(kRestartAll, kRestarted);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  EXPECT_TRUE(daemon_answers());
}

TEST(Faults, ModuleThatTheKernelRefusesIsReported) {
  start_lifecycle_daemon();
  run("gwbox fail init_module ENOMEM 2");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(count_errors("wifi_load Failed to load the MT7615 AP driver\n"), board() == "mt7615")
      << daemon_errors();
  EXPECT_EQ(count_errors("wifi_load Failed to load the MT7603 AP driver\n"), board() != "mt7615");
  EXPECT_EQ(count_errors("wifi_load Failed to load the MT7612 AP driver\n"),
            board() == "mt7603+mt7612");
  EXPECT_TRUE(daemon_answers());
}

TEST(Faults, SecondLoadIsReportedAndTheDriverStays) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(daemon_errors().find("Failed to load"), std::string::npos) << daemon_errors();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_errors().find("Failed to load the "), std::string::npos);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, FullNvramDoesNotStopIt) {
  start_lifecycle_daemon();
  run("mount -t tmpfs -o size=4k tmpfs /nvram; head -c 8192 /dev/zero > /nvram/fill 2>/dev/null");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_errors().find("No space left on device"), std::string::npos) << daemon_errors();
  EXPECT_EQ(interfaces(), all_interfaces());
}

// A drive mounted at /tmp/stick, as df reports for the device.
static void mount_drive() {
  run("mkdir -p /tmp/stick; mount -t tmpfs tmpfs /tmp/stick; touch /tmp/stick/device;"
      " ln -s /tmp/stick/device /dev/sda1");
  write_file("/tmp/factoryModeEnabled", "");
}

TEST(Load, FactoryModeTakesTheModulesFromAMountedDriveThatHasThem) {
  mount_drive();
  run("mkdir -p /tmp/stick/lib/modules; mv /lib/modules/wifi /tmp/stick/lib/modules/");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(count_traces("\033[1;32mLoading wlan drivers from mount point "
                         "/tmp/stick/lib/modules/wifi/\033[0m\n"),
            1)
      << daemon_output();
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, FactoryModeStaysWithTheDefaultWhereTheDriveHasNoModules) {
  mount_drive();
  run("cp /lib/modules/wifi/* /nvram/");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(count_traces("Loading wlan drivers from"), 0) << "/nvram is not looked at either";
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, FactoryModeStaysWithTheDefaultWhereTheDriveIsNotMounted) {
  mount_drive();
  run("mkdir -p /tmp/tools");
  write_file("/tmp/tools/awk", "#!/bin/sh\necho \"can't find mount point\"\n");
  run("chmod +x /tmp/tools/awk");
  start_lifecycle_daemon({std::string("PATH=/tmp/tools:") + getenv("PATH")});
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(count_traces("Loading wlan drivers from"), 0);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, OutsideFactoryModeNoOtherPlaceIsLookedAt) {
  mount_drive();
  run("rm /tmp/factoryModeEnabled; mkdir -p /tmp/stick/lib/modules;"
      " mv /lib/modules/wifi /tmp/stick/lib/modules/");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_errors().find("AP driver\n"), std::string::npos);
  EXPECT_EQ(interfaces(), "");
}

TEST(Load, FactoryModeTakesTheModulesFromNvramWhenTheyAreThere) {
  start_lifecycle_daemon();
  write_file("/tmp/factoryModeEnabled", "");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(daemon_output().find("Loading wlan drivers from"), std::string::npos);
  EXPECT_EQ(call_for_code(kReset, ""), 0);
  run("cp /lib/modules/wifi/* /nvram/");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_NE(daemon_output().find("\033[1;32mLoading wlan drivers from NVRAM\033[0m\n"),
            std::string::npos);
  EXPECT_EQ(interfaces(), all_interfaces());
}

TEST(Load, EepromImagesAreCopiedOnceWithTheirNotice) {
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  const std::string images = run("ls /nvram");
  EXPECT_EQ(images, board() == "mt7615" ? "MT7615_EEPROM_2G.bin\nMT7615_EEPROM_5G.bin\n"
                                        : "MT7603_EEPROM.bin\nMT7612_EEPROM.bin\n");
  EXPECT_EQ(count_traces("Loading default "), board() == "mt7615" ? 3 : 2);
  write_file("/nvram/" + images.substr(0, images.find('\n')), "changed");
  queue_and_wait(kLoad, kLoaded);
  EXPECT_EQ(read_file("/nvram/" + images.substr(0, images.find('\n'))), "changed");
  EXPECT_EQ(count_traces("Loading default "), board() == "mt7615" ? 3 : 2);
}

TEST(Load, CountryOfTheProfileRunsNoCommand) {
  set_profile_value("/tmp/mt76xx_24.dat", "CountryCode", "`>/x`");
  start_lifecycle_daemon();
  queue_and_wait(kLoad, kLoaded);
  queue_and_wait(kInit, kInitialized);
  EXPECT_FALSE(exists("/x"));
  // The text has reached the commands.
  if (board() == "mt7615") {
    EXPECT_EQ(count_errors("cp: cannot stat '/etc/Wireless/7615AP/SingleSKU_FCC_`>/x`.dat'"), 2)
        << daemon_errors();
  } else {
    EXPECT_NE(run("ls -la /tmp").find("`>"), std::string::npos);
  }
}
