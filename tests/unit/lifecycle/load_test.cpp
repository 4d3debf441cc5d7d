#include "lifecycle/load.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lifecycle/lifecycle_support.h"
#include "lifecycle/state.h"
#include "unit_support.h"

static std::string failed(const std::string& chip) {
  return rpc_error_prefix("wifi_load") + "Failed to load the " + chip + " AP driver\n";
}

// What a load writes when the default directory has no module.
static void load_without_modules(std::string* output, std::string* errors) {
  run("rm -f /lib/modules/wifi/*.ko");
  note_commands();
  *errors = errors_of([&] { *output = output_of([] { EXPECT_EQ(wifi_load(), 1); }); });
  EXPECT_TRUE(lifecycle.modules_loaded);
}

static const std::string kMissing =
    rpc_error_prefix("insert_module") + "Can't mmap kernel module file\n";

TEST(Load, MissingImagesAreAnnouncedInOneLineAndMissingModulesByChip) {
  std::string output;
  std::string errors;
  load_without_modules(&output, &errors);
  EXPECT_EQ(output,
            "Loading default 7603 EEPROM bin file to nvram"
            "Loading default 7612 EEPROM bin file to nvram");
  EXPECT_EQ(errors, kMissing + failed("MT7603") + kMissing + failed("MT7612"));
}

TEST(Load, Mt7615HasTwoImagesAndThreeNotices) {
  pretend_mt7615();
  std::string output;
  std::string errors;
  load_without_modules(&output, &errors);
  EXPECT_EQ(output,
            "Loading default 2G 7615 EEPROM bin file to nvram"
            "Loading default 5G 7615 EEPROM bin file to nvram"
            "Loading default 5G 7615 EEPROM bin file to nvram");
  EXPECT_EQ(errors, kMissing + failed("MT7615"));
}

TEST(Load, SingleBandBoardGetsBothImagesButOneModule) {
  pretend_single_band();
  std::string output;
  std::string errors;
  load_without_modules(&output, &errors);
  EXPECT_EQ(output,
            "Loading default 7603 EEPROM bin file to nvram"
            "Loading default 7612 EEPROM bin file to nvram");
  EXPECT_EQ(errors, kMissing + failed("MT7603"));
}

TEST(Load, ModulesAreInsertedInTheOrderOfTheBands) {
  note_commands();
  output_of([] { EXPECT_EQ(wifi_load(), 1); });
  const auto requests = driver_requests();
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_TRUE(contains(requests[0], "\"module\":\"mt7603e_ap\"")) << requests[0];
  EXPECT_TRUE(contains(requests[1], "\"module\":\"mt7612e_ap\"")) << requests[1];
}

TEST(Load, MountPointThatIsTooLongIsNotCut) {
  // Cut to 127 characters, the longer candidate below would lose its final slash.
  const std::string name(103, 'm');
  const std::string mounted = "/tmp/" + name;
  run("mkdir -p " + mounted + "/lib/modules/wifi; touch " + mounted +
      "/lib/modules/wifi/mt7603e_ap.ko");
  ASSERT_EQ((mounted + "/lib/modules/wifi/").size(), 126u);
  write_file("/tmp/factoryModeEnabled", "");
  write_file("/dev/sda1", "");
  note_commands(mounted + "\n");
  const std::string taken =
      "\033[1;32mLoading wlan drivers from mount point " + mounted + "/lib/modules/wifi/\033[0m\n";
  EXPECT_TRUE(contains(output_of([] { errors_of(wifi_load); }), taken));
  const std::string longer = mounted + "mm";
  const std::string cut = (longer + "/lib/modules/wifi/").substr(0, 127);
  mkdir(longer.c_str(), 0755);
  mkdir((longer + "/lib").c_str(), 0755);
  mkdir((longer + "/lib/modules").c_str(), 0755);
  write_file(cut + "mt7603e_ap.ko", "");
  write_file("/tmp/answer", longer + "\n");
  EXPECT_FALSE(contains(output_of([] { errors_of(wifi_load); }), "mount point"));
}

TEST(Load, MountPointIsShownWithoutItsControlCharacters) {
  run("mkdir -p '/tmp/a\033[2Jb/lib/modules/wifi'; touch "
      "'/tmp/a\033[2Jb/lib/modules/wifi/mt7603e_ap.ko'");
  write_file("/tmp/factoryModeEnabled", "");
  write_file("/dev/sda1", "");
  note_commands("/tmp/a\033[2Jb\n");
  EXPECT_TRUE(contains(output_of([] { errors_of(wifi_load); }),
                       "\033[1;32mLoading wlan drivers from mount point "
                       "/tmp/a\\x1b[2Jb/lib/modules/wifi/\033[0m\n"));
}

static std::string not_copied(const std::string& path) {
  return rpc_error_prefix("wifi_load") + "Failed to copy the default to " + path + "\n";
}

// What a load reports, and what "cp" reports.
static std::string errors_of_load() {
  std::string errors;
  output_of([&] { errors = errors_of([] { EXPECT_EQ(wifi_load(), 1); }); });
  return errors;
}

TEST(Load, ImageThatDidNotFitIsRemovedAndCopiedTheNextTime) {
  mount_tmpfs("/nvram", "size=16k");
  write_file("/nvram/fill", std::string(16384, 'x'));
  const std::string errors = errors_of_load();
  EXPECT_TRUE(contains(errors, not_copied("/nvram/MT7603_EEPROM.bin"))) << errors;
  EXPECT_TRUE(contains(errors, not_copied("/nvram/MT7612_EEPROM.bin"))) << errors;
  EXPECT_EQ(names_in("/nvram").size(), 1u);
  unlink("/nvram/fill");
  EXPECT_FALSE(contains(errors_of_load(), "Failed to copy"));
  EXPECT_EQ(read_file("/nvram/MT7603_EEPROM.bin"),
            read_file("/etc/Wireless/7603AP/MT7603_EEPROM.bin"));
}

TEST(Load, EmptyImageCountsAsMissing) {
  write_file("/nvram/MT7603_EEPROM.bin", "");
  write_file("/nvram/MT7612_EEPROM.bin", "calibrated");
  errors_of_load();
  EXPECT_EQ(read_file("/nvram/MT7603_EEPROM.bin"),
            read_file("/etc/Wireless/7603AP/MT7603_EEPROM.bin"));
  EXPECT_EQ(read_file("/nvram/MT7612_EEPROM.bin"), "calibrated");
}

static constexpr char kPowerLevels[] = "/tmp/l1profile.dat";
static constexpr char kDefaultLevels[] = "/etc/Wireless/7615AP/l1profile.dat";

TEST(Load, PowerLevelsOfAnotherUserAreNotUsed) {
  pretend_mt7615();
  write_file(kPowerLevels, "planted");
  if (!give_to_nobody(kPowerLevels)) GTEST_SKIP() << kOneUser;
  const std::string errors = errors_of_load();
  EXPECT_TRUE(contains(errors, "/tmp/l1profile.dat of user 65534 is removed\n")) << errors;
  EXPECT_EQ(read_file(kPowerLevels), read_file(kDefaultLevels));
}

TEST(Load, PowerLevelsOfOursStayAlsoEmptyOrBehindALink) {
  pretend_mt7615();
  write_file(kPowerLevels, "");
  EXPECT_EQ(count_of(errors_of_load(), kPowerLevels), 0);
  EXPECT_EQ(read_file(kPowerLevels), "");
  unlink(kPowerLevels);
  write_file("/tmp/levels", "mine");
  ASSERT_EQ(symlink("/tmp/levels", kPowerLevels), 0);
  EXPECT_EQ(count_of(errors_of_load(), kPowerLevels), 0);
  EXPECT_EQ(read_file(kPowerLevels), "mine");
}

TEST(Load, PowerLevelsThatCannotBeCopiedLeaveNoFile) {
  pretend_mt7615();
  run(std::string("rm ") + kDefaultLevels);
  const std::string errors = errors_of_load();
  EXPECT_TRUE(contains(errors, not_copied(kPowerLevels))) << errors;
  EXPECT_FALSE(exists(kPowerLevels));
}
