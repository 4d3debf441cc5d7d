#include "sys/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "unit_support.h"

// Closes some of the standard streams in a child, reserves them, and returns how many
// descriptors are then wrong.
static int wrong_after_reserving(int first, int last) {
  const pid_t child = fork();
  if (child == 0) {
    const int before = open_descriptors();
    for (int stream = first; stream <= last; ++stream) {
      close(stream);
    }
    reserve_standard_streams();
    int wrong = open_descriptors() != before;
    for (int stream = first; stream <= last; ++stream) {
      struct stat status;
      wrong += fstat(stream, &status) != 0 || !S_ISCHR(status.st_mode);
    }
    _exit(wrong);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StandardStreams, MissingStandardStreamsAreReserved) {
  EXPECT_EQ(wrong_after_reserving(0, 2), 0);
  EXPECT_EQ(wrong_after_reserving(1, 1), 0);
  EXPECT_EQ(wrong_after_reserving(2, 2), 0);
}

TEST(StandardStreams, OpenStandardStreamsAreLeftAlone) {
  const int before = open_descriptors();
  EXPECT_EQ(output_of([] {
              reserve_standard_streams();
              printf("still here");
            }),
            "still here");
  EXPECT_EQ(open_descriptors(), before);
}

TEST(ProcessRuns, IsWhatHasTheWholeNameAndGoesOn) {
  EXPECT_FALSE(process_runs("companion"));
  const pid_t longer = start_process_named("companion2");
  EXPECT_FALSE(process_runs("companion"));
  const pid_t process = start_process_named("companion");
  EXPECT_TRUE(process_runs("companion"));
  kill(process, SIGKILL);
  siginfo_t end = {};
  ASSERT_EQ(waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT), 0);
  EXPECT_FALSE(process_runs("companion")) << "has ended, though nobody has collected it";
  end_process(process);
  end_process(longer);
}

TEST(ProcessRuns, NothingIsFoundWithoutTheProcessList) {
  const pid_t process = start_process_named("companion");
  const int before = open_descriptors();
  EXPECT_TRUE(process_runs("companion"));
  EXPECT_EQ(open_descriptors(), before);
  fail_system_call(SYS_getdents64, EIO);
  EXPECT_FALSE(process_runs("companion"));
  end_process(process);
}
