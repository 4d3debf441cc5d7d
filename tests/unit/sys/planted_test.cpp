#include "sys/planted.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "unit_support.h"

static constexpr char kPlace[] = "/tmp/place";

static std::string message(const std::string& what) {
  return rpc_error_prefix("remove_planted") + kPlace + what + "\n";
}

static const std::string kNotPlain = message(" is removed: it is no plain file with one name");

// Whether the place has a plain file of ours with a single name.
static bool is_ours() {
  struct stat status = {};
  return lstat(kPlace, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
         status.st_uid == geteuid();
}

TEST(Planted, WayIsMadeByAnEmptyFileThatIsGivenUpAgain) {
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }), "");
  EXPECT_TRUE(is_ours());
  planted_give_up(kPlace);
  EXPECT_FALSE(exists(kPlace));
  planted_give_up(kPlace);
}

TEST(Planted, FileOfOursStaysAsItIs) {
  write_file(kPlace, "content");
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }), "");
  planted_give_up(kPlace);
  EXPECT_EQ(read_file(kPlace), "content");
}

TEST(Planted, WhatIsNoPlainFileWithOneNameMakesWay) {
  ASSERT_EQ(mkfifo(kPlace, 0666), 0);
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }), kNotPlain);
  EXPECT_TRUE(is_ours());
  unlink(kPlace);
  ASSERT_EQ(symlink("/tmp/not there", kPlace), 0);
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }), kNotPlain);
  EXPECT_TRUE(is_ours());
  EXPECT_FALSE(exists("/tmp/not there"));
  ASSERT_EQ(link(kPlace, "/tmp/second name"), 0);
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }), kNotPlain);
  EXPECT_TRUE(is_ours());
  unlink(kPlace);
  mkdir(kPlace, 0755);
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }), kNotPlain);
  EXPECT_TRUE(is_ours());
}

TEST(Planted, DirectoryThatIsNotEmptyIsMovedAside) {
  mkdir(kPlace, 0755);
  write_file(std::string(kPlace) + "/inside", "content");
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, false)); }),
            message(" is moved out of the way: it is no plain file with one name"));
  EXPECT_TRUE(is_ours());
  EXPECT_EQ(run("cat /tmp/.planted.*/moved/inside"), "content");
}

TEST(Planted, LinkOfOursStaysWhereItMay) {
  ASSERT_EQ(symlink("/tmp/not there", kPlace), 0);
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, true)); }), "");
  planted_give_up(kPlace);
  char target[32] = {};
  EXPECT_GT(readlink(kPlace, target, sizeof target - 1), 0);
  EXPECT_STREQ(target, "/tmp/not there");
}

TEST(Planted, WhatAnotherUserMadeIsRemovedAndNothingElse) {
  EXPECT_FALSE(planted_remove(kPlace));
  write_file(kPlace, "ours");
  EXPECT_FALSE(planted_remove(kPlace));
  EXPECT_EQ(read_file(kPlace), "ours");
  if (!give_to_nobody(kPlace)) GTEST_SKIP() << kOneUser;
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(planted_remove(kPlace)); }),
            message(" of user 65534 is removed"));
  EXPECT_FALSE(exists(kPlace));
  ASSERT_EQ(symlink("/tmp", kPlace), 0);
  EXPECT_FALSE(planted_remove(kPlace)) << "a link of ours";
  ASSERT_TRUE(give_to_nobody(kPlace));
  errors_of([] { EXPECT_TRUE(planted_make_way(kPlace, true)); });
  EXPECT_TRUE(is_ours());
}

TEST(Planted, WhatCannotBeRemovedIsReportedAndNoWay) {
  mount_tmpfs(kPlace, "size=4k");
  EXPECT_EQ(errors_of([] { EXPECT_FALSE(planted_make_way(kPlace, false)); }),
            message(" cannot be removed: Device or resource busy"));
  EXPECT_TRUE(names_in("/tmp", ".planted").empty());
}
