#include "daemon/instance.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "unit_support.h"

static constexpr char kInstanceLock[] = "/tmp/.wlanrpc_lock";

TEST(Instance, MayRunAndGivesTheLockUpAgain) {
  EXPECT_EQ(check_instance(), 1);
  EXPECT_TRUE(exists(kInstanceLock));
  EXPECT_EQ(check_instance(), 1);
}

TEST(Instance, MayNotRunWhileAnotherHoldsTheLock) {
  int ready[2];
  int hold[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(hold), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(hold[1]);
    const int file = open(kInstanceLock, O_RDWR | O_CREAT, 0666);
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    char byte = fcntl(file, F_SETLK, &whole) == 0 ? 'y' : 'n';
    static_cast<void>(!write(ready[1], &byte, 1));
    static_cast<void>(!read(hold[0], &byte, 1));
    _exit(0);
  }
  char byte = 'n';
  EXPECT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(byte, 'y');
  EXPECT_EQ(check_instance(), 0);
  close(hold[0]);
  close(hold[1]);
  EXPECT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_EQ(check_instance(), 1);
}

TEST(Instance, MayNotRunWhenTheLockFileCannotBeOpened) {
  ASSERT_EQ(mkdir(kInstanceLock, 0755), 0);
  EXPECT_EQ(errors_of([] { EXPECT_EQ(check_instance(), 0); }),
            rpc_error_prefix("try_record_lock") +
                "/tmp/.wlanrpc_lock cannot be opened: Is a directory\n");
}

TEST(Instance, FileThatASecondNameInTheLocksPlaceNamesIsNotTruncated) {
  write_file("/tmp/precious", "content");
  ASSERT_EQ(link("/tmp/precious", kInstanceLock), 0);
  errors_of([] { EXPECT_EQ(check_instance(), 1); });
  EXPECT_EQ(read_file("/tmp/precious"), "content");
}

TEST(Instance, WithoutAPortmapperItDoesNotRun) {
  EXPECT_FALSE(portmapper_running());
}

TEST(Instance, ProcessNamedPortmapIsAPortmapper) {
  ASSERT_EQ(system("cp \"$(command -v sleep)\" /tmp/portmap"), 0);
  const pid_t child = fork();
  if (child == 0) {
    execl("/tmp/portmap", "portmap", "60", nullptr);
    _exit(1);
  }
  EXPECT_TRUE(wait_until([] { return portmapper_running(); }));
  kill(child, SIGKILL);
  EXPECT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_FALSE(portmapper_running());
}

TEST(Instance, ProbeWithoutOutputCountsAsAPortmapper) {
  // The probe finds neither of its commands.
  setenv("PATH", "/nowhere", 1);
  errors_of([] { EXPECT_TRUE(portmapper_running()); });
}
