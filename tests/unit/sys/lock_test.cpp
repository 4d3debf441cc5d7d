#include "sys/lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <string>
#include <thread>

#include "unit_support.h"

static constexpr char kLockFile[] = "/tmp/.some.lock";

// Whether another user of the file could take the lock in that mode now.
static bool obtainable(int operation) {
  const int file = open(kLockFile, O_RDWR | O_CLOEXEC);
  const bool free = file >= 0 && flock(file, operation | LOCK_NB) == 0;
  close(file);
  return free;
}

TEST(Lock, WriteLockExcludesEverybody) {
  const int lock = fwrite_lock(kLockFile);
  ASSERT_GT(lock, 0);
  EXPECT_FALSE(obtainable(LOCK_EX));
  EXPECT_FALSE(obtainable(LOCK_SH));
  funlock(lock);
  EXPECT_TRUE(obtainable(LOCK_EX));
}

TEST(Lock, ReadLockIsShared) {
  const int first = fread_lock(kLockFile);
  const int second = fread_lock(kLockFile);
  ASSERT_GT(first, 0);
  ASSERT_GT(second, 0);
  EXPECT_FALSE(obtainable(LOCK_EX));
  EXPECT_TRUE(obtainable(LOCK_SH));
  funlock(first);
  EXPECT_FALSE(obtainable(LOCK_EX));
  funlock(second);
  EXPECT_TRUE(obtainable(LOCK_EX));
}

TEST(Lock, FileIsCreatedForEverybodyAndKept) {
  umask(0);
  funlock(fwrite_lock(kLockFile));
  struct stat status = {};
  ASSERT_EQ(stat(kLockFile, &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0666u);
}

TEST(Lock, LinkOfOursIsFollowed) {
  mkdir("/tmp/locks", 0755);
  ASSERT_EQ(symlink("locks/real", kLockFile), 0);
  const int lock = fwrite_lock(kLockFile);
  ASSERT_GT(lock, 0);
  EXPECT_TRUE(exists("/tmp/locks/real"));
  EXPECT_FALSE(obtainable(LOCK_SH));
  funlock(lock);
  funlock(fread_lock(kLockFile));
  EXPECT_EQ(names_in("/tmp/locks").size(), 1u);
}

static std::string removed_message() {
  return rpc_error_prefix("remove_planted") + kLockFile + " of user 65534 is removed\n";
}

TEST(Lock, WhatAnotherUserMadeIsReplaced) {
  write_file(kLockFile, "");
  if (!give_to_nobody(kLockFile)) GTEST_SKIP() << kOneUser;
  const auto plant = [](int kind) {
    unlink(kLockFile);
    if (kind == 0) close(open(kLockFile, O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (kind == 1) static_cast<void>(!symlink("/tmp/not there", kLockFile));
    if (kind == 2) mkfifo(kLockFile, 0666);
    if (kind == 3) mkdir(kLockFile, 0777);
    EXPECT_TRUE(give_to_nobody(kLockFile));
  };
  for (int kind = 0; kind < 4; ++kind) {
    int lock = 0;
    plant(kind);
    EXPECT_EQ(
        errors_of([&] { lock = kind % 2 == 0 ? fwrite_lock(kLockFile) : fread_lock(kLockFile); }),
        removed_message());
    EXPECT_GT(lock, 0) << kind;
    EXPECT_FALSE(obtainable(LOCK_EX));
    struct stat status = {};
    EXPECT_EQ(lstat(kLockFile, &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode) && status.st_uid == geteuid()) << kind;
    funlock(lock);
  }
  EXPECT_FALSE(exists("/tmp/not there"));
}

// The daemon waits for the holder of another user's file, but not forever.
TEST(Lock, HolderOfWhatIsReplacedIsWaitedForAWhile) {
  write_file(kLockFile, "");
  if (!give_to_nobody(kLockFile)) GTEST_SKIP() << kOneUser;
  const int held = open(kLockFile, O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  errors_of([] {
    const auto begin = std::chrono::steady_clock::now();
    const int lock = fwrite_lock(kLockFile);
    EXPECT_GT(lock, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
    funlock(lock);
  });
  close(held);
}

// Users that were waiting for the removed file take the new one.
TEST(Lock, SecondNameIsRemovedAndNobodyHoldsBothFiles) {
  write_file(kLockFile, "");
  ASSERT_EQ(link(kLockFile, "/tmp/.second"), 0);
  const int held = open(kLockFile, O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  std::atomic<int> begun = 0;
  std::atomic<bool> given_back = false;
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  const std::string errors = errors_of([&] {
    std::thread users[3];
    for (std::thread& user : users) {
      user = std::thread([&] {
        ++begun;
        const int lock = fwrite_lock(kLockFile);
        EXPECT_GT(lock, 0);
        EXPECT_TRUE(given_back) << "the old file is held";
        most = std::max(most.load(), ++inside);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        --inside;
        funlock(lock);
      });
    }
    EXPECT_TRUE(wait_until([&] { return begun == 3; }));
    given_back = true;
    close(held);
    for (std::thread& user : users)
      user.join();
  });
  EXPECT_EQ(most, 1);
  EXPECT_TRUE(
      contains(errors, std::string(kLockFile) + " is removed: it is no plain file with one name\n"))
      << errors;
  struct stat status = {};
  ASSERT_EQ(stat(kLockFile, &status), 0);
  EXPECT_EQ(status.st_nlink, 1u);
}

// A lock taken on a file that has been replaced is worthless, so the new one is taken.
TEST(Lock, FileThatWasReplacedMeanwhileIsNoLock) {
  write_file(kLockFile, "");
  const int held = open(kLockFile, O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  int lock = 0;
  std::thread waiting([&] { lock = fwrite_lock(kLockFile); });
  EXPECT_TRUE(wait_until([] { return lock_awaited(kLockFile); }));
  unlink(kLockFile);
  write_file(kLockFile, "");
  close(held);
  waiting.join();
  ASSERT_GT(lock, 0);
  EXPECT_FALSE(obtainable(LOCK_SH));
  funlock(lock);
}

TEST(Lock, WhatIsNoPlainFileThoughOursIsRefused) {
  ASSERT_EQ(mkfifo(kLockFile, 0666), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(fwrite_lock(kLockFile), 0); }),
            "open /tmp/.some.lock error\nfwrite_lock: Invalid argument\n");
  EXPECT_TRUE(exists(kLockFile));
}

TEST(Lock, ContentOfTheFileIsKept) {
  write_file(kLockFile, "content");
  funlock(fwrite_lock(kLockFile));
  funlock(fread_lock(kLockFile));
  EXPECT_EQ(read_file(kLockFile), "content");
}

TEST(Lock, DescriptorIsClosedInChildren) {
  const int lock = fwrite_lock(kLockFile);
  EXPECT_EQ(fcntl(lock, F_GETFD), FD_CLOEXEC);
  funlock(lock);
  const int shared = fread_lock(kLockFile);
  EXPECT_EQ(fcntl(shared, F_GETFD), FD_CLOEXEC);
  funlock(shared);
}

TEST(Lock, UnlockClosesTheDescriptor) {
  const int before = open_descriptors();
  const int lock = fwrite_lock(kLockFile);
  EXPECT_EQ(open_descriptors(), before + 1);
  funlock(lock);
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Lock, UnlockIgnoresZeroAndLess) {
  const int before = open_descriptors();
  EXPECT_EQ(errors_of([] {
              funlock(0);
              funlock(-1);
            }),
            "");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Lock, FileThatCannotBeOpenedIsReported) {
  int write = -1;
  int read = -1;
  const std::string errors = errors_of([&] {
    write = fwrite_lock("/tmp/none/lock");
    read = fread_lock("/tmp/none/lock");
  });
  EXPECT_EQ(write, 0);
  EXPECT_EQ(read, 0);
  EXPECT_EQ(errors,
            "open /tmp/none/lock error\n"
            "fwrite_lock: No such file or directory\n"
            "fopen /tmp/none/lock error\n"
            "fread_lock: No such file or directory\n");
}

TEST(Lock, LockThatIsRefusedIsReportedAndTheFileClosed) {
  const int before = open_descriptors();
  fail_system_call(SYS_flock, ENOLCK);
  int write = -1;
  int read = -1;
  const std::string errors = errors_of([&] {
    write = fwrite_lock(kLockFile);
    read = fread_lock(kLockFile);
  });
  EXPECT_EQ(write, 0);
  EXPECT_EQ(read, 0);
  EXPECT_EQ(errors,
            "mtk_rpc fwrite_lock error\n"
            "flock: No locks available\n"
            "mtk_rpc fread_lock error\n"
            "flock: No locks available\n");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Lock, FailingUnlockIsReportedAndTheFileClosed) {
  const int before = open_descriptors();
  const int lock = fwrite_lock(kLockFile);
  fail_system_call_if(SYS_flock, 1, LOCK_UN, ENOLCK);
  EXPECT_EQ(errors_of([&] { funlock(lock); }), "funlock fcntl error: No locks available\n");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Lock, SimpleFormsAreFlockOperations) {
  const int file = open(kLockFile, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  EXPECT_EQ(read_lock(file), 0);
  EXPECT_TRUE(obtainable(LOCK_SH));
  EXPECT_FALSE(obtainable(LOCK_EX));
  EXPECT_EQ(write_lock(file), 0);
  EXPECT_FALSE(obtainable(LOCK_SH));
  EXPECT_EQ(unlock(file), 0);
  EXPECT_TRUE(obtainable(LOCK_EX));
  close(file);
  errno = 0;
  EXPECT_EQ(write_lock(-1), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(read_lock(-1), -1);
  EXPECT_EQ(unlock(-1), -1);
}
