// How an update replaces the profile: links, mounts, full disks, failing system calls,
// leftovers.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "profile/store.h"
#include "unit_support.h"

static constexpr char kOld[] = "A=1\nSSID1=Home\n";
static constexpr char kNew[] = "A=1\nSSID1=New\n";

static unsigned set_ssid(const char* value = "New") {
  return wifiprofile_updateParam(kProfile24, "SSID1", value, "");
}

static struct stat status_of(const char* path) {
  struct stat status = {};
  EXPECT_EQ(lstat(path, &status), 0) << path;
  return status;
}

static ino_t inode_of(const char* path) {
  return status_of(path).st_ino;
}

static bool no_temporary() {
  return names_in("/tmp", "wifitemp").empty();
}

TEST(ProfileReplace, PlainFileIsRenamedOver) {
  write_file(kProfile24, kOld);
  const int old = open(kProfile24, O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(set_ssid(), 1u);
  // A reader with the old profile open still sees all of it.
  char text[64] = {};
  EXPECT_GT(read(old, text, sizeof text - 1), 0);
  EXPECT_STREQ(text, kOld);
  close(old);
  EXPECT_EQ(read_file(kProfile24), kNew);
}

TEST(ProfileReplace, ModeAndOwnerAreKept) {
  write_file(kProfile24, kOld);
  ASSERT_EQ(chmod(kProfile24, 0640), 0);
  const bool owned = chown(kProfile24, 12, 34) == 0;
  EXPECT_EQ(set_ssid(), 1u);
  const struct stat status = status_of(kProfile24);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  if (owned) {
    EXPECT_EQ(status.st_uid, 12u);
    EXPECT_EQ(status.st_gid, 34u);
  }
  EXPECT_EQ(read_file(kProfile24), kNew);
}

TEST(ProfileReplace, ModeIsKeptWhateverTheUmask) {
  write_file(kProfile24, kOld);
  ASSERT_EQ(chmod(kProfile24, 0666), 0);
  umask(077);
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(status_of(kProfile24).st_mode & 07777, 0666u);
}

TEST(ProfileReplace, SymbolicLinkStaysAndItsTargetIsOverwrittenInPlace) {
  mkdir("/tmp/real", 0755);
  write_file("/tmp/real/profile", std::string(kOld) + "Longer=than the new one\n");
  unlink(kProfile24);
  ASSERT_EQ(symlink("/tmp/real/profile", kProfile24), 0);
  const ino_t inode = inode_of("/tmp/real/profile");
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_TRUE(S_ISLNK(status_of(kProfile24).st_mode));
  EXPECT_EQ(inode_of("/tmp/real/profile"), inode);
  EXPECT_EQ(read_file("/tmp/real/profile"), std::string(kNew) + "Longer=than the new one\n");
  EXPECT_EQ(read_file(kMirror24), read_file("/tmp/real/profile"));
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, HardLinkedProfileIsOverwrittenInPlace) {
  write_file(kProfile24, kOld);
  ASSERT_EQ(link(kProfile24, "/tmp/second name"), 0);
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file("/tmp/second name"), kNew);
  EXPECT_EQ(inode_of("/tmp/second name"), inode_of(kProfile24));
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, BindMountedProfileIsOverwrittenInPlace) {
  write_file("/tmp/source", kOld);
  write_file(kProfile24, "");
  ASSERT_EQ(mount("/tmp/source", kProfile24, nullptr, MS_BIND, nullptr), 0);
  const ino_t inode = inode_of("/tmp/source");
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file("/tmp/source"), kNew);
  EXPECT_EQ(inode_of("/tmp/source"), inode);
  EXPECT_EQ(read_file(kMirror24), kNew);
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, ProfileOnAnotherFilesystemIsOverwrittenInPlace) {
  mount_tmpfs("/tmp/other", "size=64k");
  const char* path = "/tmp/other/mt76xx_24.dat";
  write_file(path, kOld);
  const ino_t inode = inode_of(path);
  EXPECT_EQ(wifiprofile_updateParam(path, "SSID1", "New", ""), 1u);
  EXPECT_EQ(read_file(path), kNew);
  EXPECT_EQ(inode_of(path), inode);
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, InPlaceProfileIsCutToItsNewLength) {
  write_file("/tmp/source", "SSID1=A rather long network name\nB=2\n");
  unlink(kProfile24);
  ASSERT_EQ(symlink("/tmp/source", kProfile24), 0);
  EXPECT_EQ(set_ssid("x"), 1u);
  EXPECT_EQ(read_file("/tmp/source"), "SSID1=x\nB=2\n");
}

TEST(ProfileReplace, CopyBackThatFailsIsReportedAndTheResultStays) {
  write_file("/tmp/source", kOld);
  unlink(kProfile24);
  ASSERT_EQ(symlink("/tmp/source", kProfile24), 0);
  ASSERT_EQ(mount("/tmp/source", "/tmp/source", nullptr, MS_BIND, nullptr), 0);
  ASSERT_EQ(mount(nullptr, "/tmp/source", nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
  const std::string errors = errors_of([] { EXPECT_EQ(set_ssid(), 1u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam copy back /tmp/mt76xx_24.dat error"
            "open file: Read-only file system\n");
  EXPECT_EQ(read_file("/tmp/source"), kOld);
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, MirrorThatCannotBeWrittenIsReportedAndTheResultStays) {
  write_file(kProfile24, kOld);
  mkdir(kMirror24, 0755);
  const std::string errors = errors_of([] { EXPECT_EQ(set_ssid(), 1u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam mirror /tmp/mt76xx_24.dat.hnc error"
            "open file: Is a directory\n");
  EXPECT_EQ(read_file(kProfile24), kNew);
}

static std::string mirror_error(const std::string& reason) {
  return "_wifiprofile_updateParam mirror /tmp/mt76xx_24.dat.hnc error"
         "open file: " +
         reason + "\n";
}

TEST(ProfileMirror, LinkOfOursIsFollowed) {
  write_file(kProfile24, kOld);
  mkdir("/tmp/drive", 0755);
  ASSERT_EQ(symlink("drive/mirror", kMirror24), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(set_ssid(), 1u); }), "");
  EXPECT_EQ(read_file("/tmp/drive/mirror"), kNew);
  EXPECT_TRUE(S_ISLNK(status_of(kMirror24).st_mode));
}

TEST(ProfileMirror, LinkOfAnotherUserIsNotFollowed) {
  write_file(kProfile24, kOld);
  write_file("/tmp/precious", "content");
  ASSERT_EQ(symlink("/tmp/precious", kMirror24), 0);
  if (!give_to_nobody(kMirror24)) GTEST_SKIP() << kOneUser;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(set_ssid(), 1u); }),
            mirror_error("Too many levels of symbolic links"));
  EXPECT_EQ(read_file("/tmp/precious"), "content");
  EXPECT_EQ(read_file(kProfile24), kNew);
}

TEST(ProfileMirror, FileOfAnotherUserIsNotWritten) {
  write_file(kProfile24, kOld);
  write_file(kMirror24, "");
  if (!give_to_nobody(kMirror24)) GTEST_SKIP() << kOneUser;
  EXPECT_EQ(errors_of([] { EXPECT_EQ(set_ssid(), 1u); }), mirror_error("Permission denied"));
  EXPECT_EQ(read_file(kMirror24), "");
}

TEST(ProfileMirror, FileWithASecondNameIsNotWritten) {
  write_file(kProfile24, kOld);
  write_file("/tmp/precious", "content");
  ASSERT_EQ(link("/tmp/precious", kMirror24), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(set_ssid(), 1u); }), mirror_error("Too many links"));
  EXPECT_EQ(read_file("/tmp/precious"), "content");
}

// The mirror is as private as the profile, even if it existed before.
TEST(ProfileMirror, HasTheProfilesModeWhateverTheUmask) {
  write_file(kProfile24, kOld);
  for (const mode_t mode : {0600u, 0644u, 0600u, 0666u}) {
    ASSERT_EQ(chmod(kProfile24, mode), 0);
    umask(mode == 0666 ? 077 : 0);
    EXPECT_EQ(set_ssid(mode == 0644 ? "Newer" : "New"), 1u);
    EXPECT_EQ(status_of(kMirror24).st_mode & 07777, mode);
    unlink(mode == 0666 ? kMirror24 : "/tmp/none");
    EXPECT_EQ(set_ssid("Again"), 1u);
    EXPECT_EQ(status_of(kMirror24).st_mode & 07777, mode);
  }
}

TEST(ProfileMirror, DriveWithoutModesHoldsItAllTheSame) {
  write_file(kProfile24, kOld);
  write_file(kMirror24, "");
  ASSERT_EQ(chmod(kMirror24, 0755), 0);
  fail_system_call(SYS_fchmod, EPERM);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(set_ssid(), 1u); }), "");
  EXPECT_EQ(read_file(kMirror24), kNew);
}

TEST(ProfileMirror, ModeThatCannotBeSetLeavesItUnwritten) {
  write_file(kProfile24, kOld);
  write_file(kMirror24, "");
  ASSERT_EQ(chmod(kMirror24, 0755), 0);
  fail_system_call(SYS_fchmod, EIO);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(set_ssid(), 1u); }), mirror_error("Input/output error"));
  EXPECT_EQ(read_file(kMirror24), "");
}

// With and without a reader at the other end.
TEST(ProfileReplace, FifoInTheMirrorsPlaceDoesNotHoldTheUpdateUp) {
  write_file(kProfile24, kOld);
  ASSERT_EQ(mkfifo(kMirror24, 0666), 0);
  std::string errors = errors_of([] { EXPECT_EQ(set_ssid(), 1u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam mirror /tmp/mt76xx_24.dat.hnc error"
            "open file: No such device or address\n");
  EXPECT_EQ(read_file(kProfile24), kNew);
  const int reader = open(kMirror24, O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  errors = errors_of([] { EXPECT_EQ(set_ssid("Newer"), 1u); });
  EXPECT_EQ(errors,
            "_wifiprofile_updateParam mirror /tmp/mt76xx_24.dat.hnc error"
            "open file: Invalid argument\n");
  char byte;
  EXPECT_EQ(read(reader, &byte, 1), 0);
}

TEST(ProfileReplace, LongerOldMirrorIsCutToTheNewContent) {
  write_file(kProfile24, kOld);
  write_file(kMirror24, std::string(10000, 'm'));
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file(kMirror24), kNew);
}

// Makes a profile of 16 KiB in a /tmp without room for a second one.
static std::string fill_tmp_to_the_brim() {
  mount_tmpfs("/tmp", "size=28k");
  std::string content = "SSID1=Home\n";
  while (content.size() < 16000) {
    content += "Key" + std::to_string(content.size()) + "=value\n";
  }
  write_file(kProfile24, content);
  return content;
}

TEST(ProfileReplace, FullDiskLeavesTheOldProfileWhole) {
  const std::string content = fill_tmp_to_the_brim();
  const std::string errors = errors_of([] { EXPECT_EQ(set_ssid(), 0u); });
  EXPECT_TRUE(errors.starts_with("_wifiprofile_updateParam 2 write /tmp/wifitemp.24.1.")) << errors;
  EXPECT_TRUE(errors.ends_with(" erroropen file: No space left on device\n")) << errors;
  EXPECT_EQ(read_file(kProfile24), content);
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, FullDiskFailsTheForcedFormToo) {
  const std::string content = fill_tmp_to_the_brim();
  const std::string errors = errors_of(
      [] { EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "SSID1", "New", ""), 0u); });
  EXPECT_TRUE(errors.starts_with("_wifiprofile_updateParam_force 2 write /tmp/wifitemp.24."))
      << errors;
  EXPECT_EQ(read_file(kProfile24), content);
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, TemporaryThatCannotBeFlushedFailsTheUpdate) {
  write_file(kProfile24, kOld);
  fail_system_call(SYS_fsync, EIO);
  const std::string errors = errors_of([] { EXPECT_EQ(set_ssid(), 0u); });
  EXPECT_TRUE(errors.starts_with("_wifiprofile_updateParam 2 write /tmp/wifitemp.24.1.")) << errors;
  EXPECT_TRUE(errors.ends_with(" erroropen file: Input/output error\n")) << errors;
  EXPECT_EQ(read_file(kProfile24), kOld);
  EXPECT_FALSE(exists(kMirror24));
  EXPECT_TRUE(no_temporary());
}

TEST(ProfileReplace, ProfileThatCannotBeRenamedOverIsOverwrittenInPlace) {
  write_file(kProfile24, kOld);
  const ino_t inode = inode_of(kProfile24);
#ifdef SYS_rename
  fail_system_call(SYS_rename, EXDEV);
#endif
  fail_system_call(SYS_renameat, EXDEV);
  fail_system_call(SYS_renameat2, EXDEV);
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file(kProfile24), kNew);
  EXPECT_EQ(inode_of(kProfile24), inode);
  EXPECT_TRUE(no_temporary());
}

// Leftovers of a crashed update occupy every temporary name.

template <typename Make>
static void in_the_way(Make make) {
  for (int i = 0; i < 1000; ++i) {
    make(("/tmp/wifitemp.24.1." + std::to_string(i)).c_str());
  }
}

TEST(ProfileLeftover, FileInTheWayDoesNotBlock) {
  write_file(kProfile24, kOld);
  in_the_way([](const char* path) { close(open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0400)); });
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file(kProfile24), kNew);
  EXPECT_EQ(names_in("/tmp", "wifitemp").size(), 999u);
}

TEST(ProfileLeftover, LinkInTheWayDoesNotReachItsTarget) {
  write_file(kProfile24, kOld);
  write_file("/tmp/precious", "precious");
  in_the_way([](const char* path) { EXPECT_EQ(symlink("/tmp/precious", path), 0); });
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file(kProfile24), kNew);
  EXPECT_TRUE(S_ISREG(status_of(kProfile24).st_mode));
  EXPECT_EQ(read_file("/tmp/precious"), "precious");
  EXPECT_EQ(names_in("/tmp", "wifitemp").size(), 999u);
}

TEST(ProfileLeftover, DanglingLinkInTheWayCreatesNothing) {
  write_file(kProfile24, kOld);
  in_the_way([](const char* path) { EXPECT_EQ(symlink("/tmp/not there", path), 0); });
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_FALSE(exists("/tmp/not there"));
}

TEST(ProfileLeftover, FifoInTheWayIsReplacedAndNobodyWaitedFor) {
  write_file(kProfile24, kOld);
  in_the_way([](const char* path) { EXPECT_EQ(mkfifo(path, 0666), 0); });
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file(kProfile24), kNew);
  EXPECT_TRUE(S_ISREG(status_of(kProfile24).st_mode));
}

TEST(ProfileLeftover, DirectoryOfAnotherUserInTheWayStopsNoUpdate) {
  write_file(kProfile24, kOld);
  bool others = true;
  in_the_way([&](const char* path) {
    mkdir(path, 0755);
    others = others && give_to_nobody(path);
  });
  if (!others) GTEST_SKIP() << kOneUser;
  errors_of([] { EXPECT_EQ(set_ssid(), 1u); });
  EXPECT_EQ(read_file(kProfile24), kNew);
}

TEST(ProfileLeftover, HardLinkInTheWayDoesNotReachItsOtherName) {
  write_file(kProfile24, kOld);
  write_file("/tmp/precious", "precious");
  in_the_way([](const char* path) { EXPECT_EQ(link("/tmp/precious", path), 0); });
  EXPECT_EQ(set_ssid(), 1u);
  EXPECT_EQ(read_file("/tmp/precious"), "precious");
}

TEST(ProfileDescriptors, NoCallLeavesOneOpen) {
  write_file(kProfile24, "SSID1=Home\nLast=1;2\n");
  const int before = open_descriptors();
  char buffer[kProfileFieldBuffer];
  errors_of([&] {
    EXPECT_EQ(wifiprofile_getParam(kProfile24, "SSID1", buffer, 255), 1);
    EXPECT_EQ(wifiprofile_getParam(kProfile24, "None", buffer, 255), 0);
    EXPECT_EQ(wifiprofile_getParam("/tmp/none", "SSID1", buffer, 255), 0);
    EXPECT_EQ(wifiprofile_getParam("/tmp", "SSID1", buffer, 255), 0);
    EXPECT_EQ(wifiprofile_getParam_with_index(kProfile24, "Last", 1, buffer, 255), 1);
    EXPECT_EQ(set_ssid(), 1u);
    EXPECT_EQ(set_ssid(), 2u);
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "None", "x", ""), 0u);
    EXPECT_EQ(wifiprofile_updateParam("/tmp/none", "SSID1", "x", ""), 0u);
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", "\n", ""), 0u);
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "Last", 1, "x", ""), 1u);
    EXPECT_EQ(wifiprofile_updateParam_with_index(kProfile24, "Last", 9999, "x", ""), 0u);
    EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "Added", "x", ""), 1u);
    EXPECT_EQ(wifiprofile_updateParam_with_index_force(kProfile24, "Last", 0, "x", ""), 1u);
  });
  EXPECT_EQ(open_descriptors(), before);
  in_the_way([](const char* path) { mkdir(path, 0755); });
  errors_of([] { EXPECT_EQ(set_ssid("Blocked"), 0u); });
  EXPECT_EQ(open_descriptors(), before);
  unlink(kLock24);
  mkdir(kLock24, 0755);
  unlink(kProfile24);
  errors_of([] { EXPECT_EQ(set_ssid(), 0u); });
  EXPECT_EQ(open_descriptors(), before);
}

TEST(ProfileDescriptors, FailingFlushLeavesNoneOpen) {
  write_file(kProfile24, kOld);
  const int before = open_descriptors();
  fail_system_call(SYS_fsync, EIO);
  errors_of([] { EXPECT_EQ(set_ssid(), 0u); });
  EXPECT_EQ(open_descriptors(), before);
}
