#include "sys/lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "unit_support.h"

static constexpr char kFile[] = "/tmp/.some.lock";

// Whether somebody else could take the lock in that mode now.
static bool obtainable(int operation) {
  const int file = open(kFile, O_RDWR | O_CLOEXEC);
  const bool free = file >= 0 && flock(file, operation | LOCK_NB) == 0;
  close(file);
  return free;
}

TEST(Lock, WriteLockExcludesEverybody) {
  const int lock = fwrite_lock(kFile);
  ASSERT_GT(lock, 0);
  EXPECT_FALSE(obtainable(LOCK_EX));
  EXPECT_FALSE(obtainable(LOCK_SH));
  funlock(lock);
  EXPECT_TRUE(obtainable(LOCK_EX));
}

TEST(Lock, ReadLockIsShared) {
  const int first = fread_lock(kFile);
  const int second = fread_lock(kFile);
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
  funlock(fwrite_lock(kFile));
  struct stat status = {};
  ASSERT_EQ(stat(kFile, &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0666u);
}

TEST(Lock, NothingIsCreatedThroughALinkInItsPlace) {
  ASSERT_EQ(symlink("/tmp/not there", kFile), 0);
  const std::string errors = errors_of([] {
    EXPECT_EQ(fwrite_lock(kFile), 0);
    EXPECT_EQ(fread_lock(kFile), 0);
  });
  EXPECT_EQ(errors,
            "open /tmp/.some.lock error\nfwrite_lock: Too many levels of symbolic links\n"
            "fopen /tmp/.some.lock error\nfread_lock: Too many levels of symbolic links\n");
  EXPECT_FALSE(exists("/tmp/not there"));
}

TEST(Lock, ContentOfTheFileIsKept) {
  write_file(kFile, "content");
  funlock(fwrite_lock(kFile));
  funlock(fread_lock(kFile));
  EXPECT_EQ(read_file(kFile), "content");
}

TEST(Lock, DescriptorIsClosedInChildren) {
  const int lock = fwrite_lock(kFile);
  EXPECT_EQ(fcntl(lock, F_GETFD), FD_CLOEXEC);
  funlock(lock);
  const int shared = fread_lock(kFile);
  EXPECT_EQ(fcntl(shared, F_GETFD), FD_CLOEXEC);
  funlock(shared);
}

TEST(Lock, UnlockClosesTheDescriptor) {
  const int before = open_descriptors();
  const int lock = fwrite_lock(kFile);
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
    write = fwrite_lock(kFile);
    read = fread_lock(kFile);
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
  const int lock = fwrite_lock(kFile);
  fail_system_call_if(SYS_flock, 1, LOCK_UN, ENOLCK);
  EXPECT_EQ(errors_of([&] { funlock(lock); }), "funlock fcntl error: No locks available\n");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(Lock, SimpleFormsAreFlockOperations) {
  const int file = open(kFile, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
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
