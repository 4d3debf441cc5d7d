#include "sys/record_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "unit_support.h"

static constexpr char kRecordFile[] = "/tmp/.record_lock";

// Holds a record lock on the file in a child until *release is closed.
static pid_t hold_record_lock(int* release) {
  int ready[2];
  int hold[2];
  EXPECT_EQ(pipe(ready), 0);
  EXPECT_EQ(pipe(hold), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(hold[1]);
    const int file = open(kRecordFile, O_RDWR | O_CREAT, 0666);
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    fcntl(file, F_SETLK, &whole);
    char byte = 'x';
    static_cast<void>(!write(ready[1], &byte, 1));
    static_cast<void>(!read(hold[0], &byte, 1));
    _exit(0);
  }
  char byte;
  EXPECT_EQ(read(ready[0], &byte, 1), 1);
  close(ready[0]);
  close(ready[1]);
  close(hold[0]);
  *release = hold[1];
  return child;
}

TEST(RecordLock, IsTriedAndGivenUpAgain) {
  const int before = open_descriptors();
  EXPECT_TRUE(try_record_lock(kRecordFile));
  EXPECT_TRUE(try_record_lock(kRecordFile));
  EXPECT_EQ(open_descriptors(), before);
  EXPECT_TRUE(exists(kRecordFile));
  int release = -1;
  const pid_t child = hold_record_lock(&release);
  EXPECT_FALSE(try_record_lock(kRecordFile));
  close(release);
  EXPECT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_TRUE(try_record_lock(kRecordFile));
}

TEST(RecordLock, TruncatesTheFile) {
  write_file(kRecordFile, "content");
  EXPECT_TRUE(try_record_lock(kRecordFile));
  EXPECT_EQ(read_file(kRecordFile), "");
}

TEST(RecordLock, FailsWhenTheFileCannotBeOpenedAndSaysWhy) {
  const std::string prefix = rpc_error_prefix("try_record_lock");
  EXPECT_EQ(errors_of([] { EXPECT_FALSE(try_record_lock("/tmp/none/lock")); }),
            prefix + "/tmp/none/lock cannot be opened: No such file or directory\n");
  EXPECT_EQ(errors_of([] { EXPECT_FALSE(try_record_lock("/tmp")); }),
            prefix + "/tmp cannot be opened: Is a directory\n");
}

TEST(RecordLock, FileIsForItsOwnerAlone) {
  umask(0);
  EXPECT_TRUE(try_record_lock(kRecordFile));
  struct stat status = {};
  ASSERT_EQ(stat(kRecordFile, &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST(RecordLock, FollowsALinkOfOurs) {
  write_file("/tmp/elsewhere", "content");
  ASSERT_EQ(symlink("elsewhere", kRecordFile), 0);
  EXPECT_TRUE(try_record_lock(kRecordFile));
  EXPECT_EQ(read_file("/tmp/elsewhere"), "");
}

TEST(RecordLock, ReplacesWhatAnotherUserMade) {
  write_file(kRecordFile, "");
  if (!give_to_nobody(kRecordFile)) GTEST_SKIP() << kOneUser;
  const std::string who = rpc_error_prefix("remove_planted") + kRecordFile + " of user 65534 is ";
  const std::string message = who + "removed\n";
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(try_record_lock(kRecordFile)); }), message);
  unlink(kRecordFile);
  write_file("/tmp/precious", "content");
  ASSERT_EQ(symlink("/tmp/precious", kRecordFile), 0);
  ASSERT_TRUE(give_to_nobody(kRecordFile));
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(try_record_lock(kRecordFile)); }), message);
  EXPECT_EQ(read_file("/tmp/precious"), "content");
  unlink(kRecordFile);
  ASSERT_EQ(mkdir(kRecordFile, 0755), 0);
  write_file(std::string(kRecordFile) + "/inside", "");
  ASSERT_TRUE(give_to_nobody(kRecordFile));
  EXPECT_EQ(errors_of([] { EXPECT_TRUE(try_record_lock(kRecordFile)); }),
            who + "moved out of the way\n");
}

// Whether nobody's lock on our file with that mode keeps us from locking it.
static bool locked_out_by_nobody(mode_t mode) {
  unlink(kRecordFile);
  close(open(kRecordFile, O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  EXPECT_EQ(chmod(kRecordFile, mode), 0);
  int ready[2];
  EXPECT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (setresuid(65534, 65534, 65534) != 0) _exit(1);
    // /proc then shows root as the process's owner.
    prctl(PR_SET_DUMPABLE, 0);
    const int file = open(kRecordFile, (mode & 2) != 0 ? O_RDWR : O_RDONLY);
    struct flock whole = {};
    whole.l_type = (mode & 2) != 0 ? F_WRLCK : F_RDLCK;
    char byte = fcntl(file, F_SETLK, &whole) == 0 ? 'y' : 'n';
    static_cast<void>(!write(ready[1], &byte, 1));
    pause();
  }
  char byte = 'n';
  EXPECT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(byte, 'y');
  const bool granted = try_record_lock(kRecordFile);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return !granted;
}

TEST(RecordLock, LockOfAnotherUserIsNoReasonNotToRun) {
  write_file("/tmp/probe", "");
  if (!give_to_nobody("/tmp/probe")) GTEST_SKIP() << kOneUser;
  const std::string message = rpc_error_prefix("try_record_lock") + kRecordFile +
                              " is removed: another user has locked it\n";
  EXPECT_EQ(errors_of([] { EXPECT_FALSE(locked_out_by_nobody(0666)); }), message);
  EXPECT_EQ(errors_of([] { EXPECT_FALSE(locked_out_by_nobody(0644)); }), message);
}
