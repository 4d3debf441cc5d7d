// Several users of one profile at the same time.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>

#include "profile/store.h"
#include "unit_support.h"

static std::string long_profile(const std::string& ssid) {
  std::string content;
  for (int i = 0; i < 300; ++i) {
    content += i == 150 ? "SSID1=" + ssid + "\n" : "Key" + std::to_string(i) + "=value\n";
  }
  return content;
}

TEST(ProfileLock, ReaderWithoutALockAlwaysSeesAWholeProfile) {
  const std::string values[] = {"short", std::string(700, 'l')};
  const std::string contents[] = {long_profile(values[0]), long_profile(values[1])};
  write_file(kProfile24, contents[0]);
  std::atomic<bool> done = false;
  std::thread writer([&] {
    for (int i = 1; i <= 1000; ++i) {
      EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", values[i % 2].c_str(), ""), 1u);
    }
    done = true;
  });
  int reads = 0;
  int torn = 0;
  while (!done) {
    const std::string seen = read_file(kProfile24);
    torn += seen != contents[0] && seen != contents[1];
    ++reads;
  }
  writer.join();
  EXPECT_GT(reads, 1);
  EXPECT_EQ(torn, 0);
}

// Increments the key's value; exits with the number of lost updates.
[[noreturn]] static void count_up(const char* key, int updates) {
  int lost = 0;
  for (int i = 1; i <= updates; ++i) {
    const std::string value = std::to_string(i);
    char buffer[16] = {};
    lost += wifiprofile_updateParam(kProfile24, key, value.c_str(), "") != 1u;
    lost += wifiprofile_getParam(kProfile24, key, buffer, 15) != 1 || value != buffer;
  }
  _exit(lost > 100 ? 100 : lost);
}

TEST(ProfileLock, TwoProcessesLoseNothingOfEachOther) {
  write_file(kProfile24, "A=0\nB=0\n");
  pid_t children[2];
  for (int i = 0; i < 2; ++i) {
    children[i] = fork();
    if (children[i] == 0) count_up(i == 0 ? "A" : "B", 200);
  }
  for (const pid_t child : children) {
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(read_file(kProfile24), "A=200\nB=200\n");
  EXPECT_EQ(read_file(kMirror24), "A=200\nB=200\n");
}

TEST(ProfileLock, UpdateWaitsForAnotherHolder) {
  write_file(kProfile24, "A=0\n");
  const int held = open(kLock24, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  ASSERT_EQ(flock(held, LOCK_SH), 0);
  unsigned result = 9;
  std::thread writer([&] { result = wifiprofile_updateParam(kProfile24, "A", "1", ""); });
  EXPECT_TRUE(wait_until([] { return lock_awaited(kLock24); }));
  EXPECT_EQ(read_file(kProfile24), "A=0\n");
  EXPECT_FALSE(exists(kMirror24));
  close(held);
  writer.join();
  EXPECT_EQ(result, 1u);
  EXPECT_EQ(read_file(kProfile24), "A=1\n");
}

TEST(ProfileLock, ReadWaitsForAWriterOnly) {
  write_file(kProfile24, "A=0\n");
  const int held = open(kLock24, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  ASSERT_EQ(flock(held, LOCK_SH), 0);
  char buffer[16] = {};
  EXPECT_EQ(wifiprofile_getParam(kProfile24, "A", buffer, 15), 1);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  int result = 9;
  std::thread reader([&] { result = wifiprofile_getParam(kProfile24, "A", buffer, 15); });
  EXPECT_TRUE(wait_until([] { return lock_awaited(kLock24); }));
  write_file(kProfile24, "A=new\n");
  close(held);
  reader.join();
  EXPECT_EQ(result, 1);
  EXPECT_STREQ(buffer, "new");
}

TEST(ProfileLock, FreeAgainAfterEveryKindOfCall) {
  write_file(kProfile24, "A=0\nL=1;2\n");
  char buffer[kProfileFieldBuffer];
  const auto expect_free = [](const char* after) {
    const int lock = try_exclusive(kLock24);
    EXPECT_GE(lock, 0) << after;
    close(lock);
  };
  errors_of([&] {
    EXPECT_EQ(wifiprofile_getParam(kProfile24, "A", buffer, 15), 1);
    expect_free("read");
    EXPECT_EQ(wifiprofile_getParam_with_index(kProfile24, "L", 5, buffer, 15), 0);
    expect_free("field that is not there");
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "A", "1", ""), 1u);
    expect_free("update");
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "A", "1", ""), 2u);
    expect_free("no change");
    EXPECT_EQ(wifiprofile_updateParam(kProfile24, "None", "1", ""), 0u);
    expect_free("absent key");
    EXPECT_EQ(wifiprofile_updateParam_force(kProfile24, "B", "1", ""), 1u);
    expect_free("forced update");
    unlink(kProfile24);
    EXPECT_EQ(wifiprofile_getParam(kProfile24, "A", buffer, 15), 0);
    expect_free("missing profile");
  });
}

TEST(ProfileLock, BandsDoNotWaitForEachOther) {
  write_file(kProfile24, "A=0\n");
  write_file(kProfile5, "A=0\n");
  const int held = open(kLock5, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  EXPECT_EQ(wifiprofile_updateParam(kProfile24, "A", "1", ""), 1u);
  close(held);
}

// Whether an update has begun to write. Its lock does not show this.
static bool update_under_way(ino_t old_profile) {
  struct stat status = {};
  return !names_in("/tmp", "wifitemp").empty() ||
         (stat(kProfile24, &status) == 0 && status.st_ino != old_profile);
}

// A waiting user looks as soon as the lock is free. In so large a profile, a mirror
// written after the unlock would not be there yet.
TEST(ProfileLock, HeldUntilTheMirrorIsWritten) {
  const std::string content = "A=0\n" + std::string(8 << 20, '\n') + "SSID1=";
  write_file(kProfile24, content + "0\n");
  const int lock = open(kLock24, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  for (const char* value : {"1\n", "2\n", "3\n"}) {
    struct stat old = {};
    ASSERT_EQ(stat(kProfile24, &old), 0);
    std::thread writer([&] {
      const std::string text(value, 1);
      EXPECT_EQ(wifiprofile_updateParam(kProfile24, "SSID1", text.c_str(), ""), 1u);
    });
    EXPECT_TRUE(wait_until([&] { return update_under_way(old.st_ino); }));
    EXPECT_EQ(flock(lock, LOCK_EX), 0);
    char last[3] = {};
    const int mirror = open(kMirror24, O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(pread(mirror, last, 2, static_cast<off_t>(content.size())), 2);
    EXPECT_STREQ(last, value);
    close(mirror);
    EXPECT_EQ(flock(lock, LOCK_UN), 0);
    writer.join();
  }
  close(lock);
}
