#include "diag/own_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "unit_support.h"

static constexpr char kFile[] = "/tmp/own";

// 0, or the error when the file is opened with these flags.
static int error_of_opening(const char* path = kFile, int flags = O_RDWR) {
  struct stat status;
  const int file = own_file_open(AT_FDCWD, path, flags, 0640, &status);
  if (file < 0) return errno;
  close(file);
  return 0;
}

TEST(OwnFile, IsMadeWithItsModeAndDescribed) {
  umask(0);
  struct stat status = {};
  EXPECT_EQ(error_of_opening(), ENOENT);
  const int file = own_file_open(AT_FDCWD, kFile, O_RDWR | O_CREAT, 0640, &status);
  ASSERT_GE(file, 0);
  EXPECT_EQ(status.st_mode, S_IFREG | 0640u);
  EXPECT_EQ(fcntl(file, F_GETFD), FD_CLOEXEC);
  close(file);
  EXPECT_EQ(error_of_opening(), 0);
}

TEST(OwnFile, WhatIsNoneIsRefusedAndClosed) {
  const int before = open_descriptors();
  ASSERT_EQ(mkfifo(kFile, 0666), 0);
  EXPECT_EQ(error_of_opening(), EINVAL);
  EXPECT_EQ(error_of_opening("/tmp"), EISDIR);
  write_file("/tmp/one", "");
  ASSERT_EQ(link("/tmp/one", "/tmp/two"), 0);
  EXPECT_EQ(error_of_opening("/tmp/two"), EMLINK);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(OwnFile, AnotherUsersIsRefused) {
  write_file(kFile, "");
  if (!give_to_nobody(kFile)) GTEST_SKIP() << kOneUser;
  EXPECT_EQ(error_of_opening(), EACCES);
  ASSERT_EQ(symlink(kFile, "/tmp/link"), 0);
  EXPECT_EQ(error_of_opening("/tmp/link"), EACCES) << "a link of ours to it";
  unlink(kFile);
  write_file(kFile, "");
  EXPECT_EQ(error_of_opening("/tmp/link"), 0);
  ASSERT_TRUE(give_to_nobody("/tmp/link"));
  EXPECT_EQ(error_of_opening("/tmp/link"), ELOOP) << "its link to ours";
}

TEST(OwnFile, LinksOfOursAreFollowedFromWhereTheyAre) {
  mkdir("/tmp/a", 0755);
  mkdir("/tmp/b", 0755);
  ASSERT_EQ(symlink("../b/second", "/tmp/a/first"), 0);
  ASSERT_EQ(symlink("/tmp/b/file", "/tmp/b/second"), 0);
  EXPECT_EQ(error_of_opening("/tmp/a/first"), ENOENT);
  EXPECT_EQ(error_of_opening("/tmp/a/first", O_RDWR | O_CREAT), 0);
  EXPECT_TRUE(exists("/tmp/b/file"));
  char target[PATH_MAX];
  EXPECT_TRUE(own_file_resolve(AT_FDCWD, "/tmp/a/first", target));
  EXPECT_STREQ(target, "/tmp/b/file");
  EXPECT_TRUE(own_file_resolve(AT_FDCWD, "/tmp/none", target));
  EXPECT_STREQ(target, "/tmp/none");
}

TEST(OwnFile, SecondNameOfALinkIsNotFollowed) {
  ASSERT_EQ(symlink("/tmp/target", "/tmp/link"), 0);
  ASSERT_EQ(linkat(AT_FDCWD, "/tmp/link", AT_FDCWD, kFile, 0), 0);
  EXPECT_EQ(error_of_opening(kFile, O_RDWR | O_CREAT), ELOOP);
  EXPECT_FALSE(exists("/tmp/target"));
}

TEST(OwnFile, LinksWithoutEndAndPathsWithoutEndAreRefused) {
  const int before = open_descriptors();
  ASSERT_EQ(symlink(kFile, kFile), 0);
  EXPECT_EQ(error_of_opening(), ELOOP);
  const std::string longest(4090, 'x');
  ASSERT_EQ(symlink(longest.c_str(), "/tmp/long"), 0);
  EXPECT_EQ(error_of_opening("/tmp/long"), ENAMETOOLONG);
  EXPECT_EQ(open_descriptors(), before);
}
