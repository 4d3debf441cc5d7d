#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "profile/profile_support.h"
#include "profile/store.h"
#include "unit_support.h"

// The sets of files of the bands.

static void update_with_blocked_temporary(const char* path, const char* pattern, bool forced) {
  // Directories take all thousand names, so that the message shows the name.
  for (int i = 0; i < 1000; ++i) {
    char name[64];
    snprintf(name, sizeof name, "%s%d", pattern, i);
    mkdir(name, 0755);
  }
  unsigned result = 9;
  const std::string errors = errors_of([&] {
    result = forced ? wifiprofile_updateParam_force(path, "SSID1", "New", "")
                    : wifiprofile_updateParam(path, "SSID1", "New", "");
  });
  EXPECT_EQ(result, 0u);
  const std::string name = forced ? "_wifiprofile_updateParam_force" : "_wifiprofile_updateParam";
  const std::string head = name + " 2 open " + pattern;
  const std::string tail = " erroropen file: Is a directory\n";
  ASSERT_TRUE(errors.starts_with(head) && errors.ends_with(tail)) << errors;
  const std::string number = errors.substr(head.size(), errors.size() - head.size() - tail.size());
  EXPECT_TRUE(!number.empty() && number.size() <= 3 &&
              number.find_first_not_of("0123456789") == number.npos)
      << errors;
}

TEST(ProfileFiles, TemporaryThatCannotBeOpenedFailsTheUpdate) {
  set_up();
  update_with_blocked_temporary(kProfile24, "/tmp/wifitemp.24.1.", false);
  EXPECT_EQ(read_file(kProfile24), kContent);
  EXPECT_FALSE(exists(kMirror24));
  const int lock = try_exclusive(kLock24);
  EXPECT_GE(lock, 0);
  close(lock);
}

TEST(ProfileFiles, ForcedTemporaryHasNamesOfItsOwn) {
  set_up();
  update_with_blocked_temporary(kProfile24, "/tmp/wifitemp.24.", true);
  EXPECT_EQ(read_file(kProfile24), kContent);
  // A normal update uses other names, which are free.
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u);
}

TEST(ProfileFiles, FiveGigahertzBandHasASetOfItsOwn) {
  set_up();
  write_file(kProfile5, kContent);
  EXPECT_EQ(wifiprofile_updateParam(kProfile5, "SSID1", "Five", ""), 1u);
  EXPECT_EQ(read_file(kMirror5), with("SSID1=Home", "SSID1=Five"));
  EXPECT_TRUE(exists(kLock5));
  EXPECT_FALSE(exists(kLock24));
  expect_untouched();
  update_with_blocked_temporary(kProfile5, "/tmp/wifitemp.5.1.", false);
}

TEST(ProfileFiles, ForcedUpdateOfFiveGigahertzHasItsTemporaryNames) {
  write_file(kProfile5, kContent);
  update_with_blocked_temporary(kProfile5, "/tmp/wifitemp.5.", true);
}

TEST(ProfileFiles, AnyOtherPathUsesTheFiveGigahertzSet) {
  set_up();
  write_file("/tmp/elsewhere.dat", kContent);
  EXPECT_EQ(wifiprofile_updateParam("/tmp/elsewhere.dat", "SSID1", "Five", ""), 1u);
  EXPECT_EQ(read_file("/tmp/elsewhere.dat"), with("SSID1=Home", "SSID1=Five"));
  EXPECT_EQ(read_file(kMirror5), with("SSID1=Home", "SSID1=Five"));
  EXPECT_TRUE(exists(kLock5));
  EXPECT_FALSE(exists(kLock24));
}

TEST(ProfileFiles, PathThatContainsTheNameUsesTheTwoPointFourGigahertzSet) {
  set_up();
  mkdir("/tmp/copy", 0755);
  write_file("/tmp/copy/mt76xx_24.dat.old", kContent);
  EXPECT_EQ(wifiprofile_updateParam("/tmp/copy/mt76xx_24.dat.old", "SSID1", "New", ""), 1u);
  EXPECT_TRUE(exists(kLock24));
  EXPECT_EQ(read_file(kMirror24), with("SSID1=Home", "SSID1=New"));
  EXPECT_EQ(read_file(kProfile24), kContent);
}

TEST(ProfileFiles, MissingProfileIsReportedAndNotCreated) {
  set_up();
  unlink(kProfile24);
  const std::string errors =
      errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 0u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam 1 open /tmp/mt76xx_24.dat error"
            "open file: No such file or directory\n");
  EXPECT_FALSE(exists(kProfile24));
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_TRUE(names_in("/tmp", "wifitemp").empty());
  const int lock = try_exclusive(kLock24);
  EXPECT_GE(lock, 0);
  close(lock);
}

TEST(ProfileFiles, UpdateGoesOnWithoutALockWhenTheLockFileCannotBeOpened) {
  set_up();
  mkdir(kLock24, 0755);
  const std::string errors =
      errors_of([] { EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "New", ""), 1u); });
  EXPECT_EQ(errors,
            "open /tmp/.mt76xx_24.dat.lock error\n"
            "fwrite_lock: Is a directory\n");
  expect_written(with("SSID1=Home", "SSID1=New"));
  rmdir(kLock24);
}
