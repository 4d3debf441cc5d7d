#include "sys/limits.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "unit_support.h"

static rlim_t limit_from(rlim_t soft, rlim_t hard) {
  rlimit limit = {soft, hard};
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  set_descriptor_limit();
  EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(limit.rlim_max, hard);
  return limit.rlim_cur;
}

TEST(Limits, DescriptorsAreTheHardLimitUpTo16384) {
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  if (limit.rlim_max > 16384) {
    EXPECT_EQ(limit_from(64, limit.rlim_max), 16384u);
    EXPECT_EQ(limit_from(limit.rlim_max, limit.rlim_max), 16384u);
    EXPECT_EQ(limit_from(64, 16385), 16384u);
  }
  EXPECT_EQ(limit_from(64, 900), 900u);
  EXPECT_EQ(limit_from(900, 900), 900u);
}

TEST(Limits, WriteWithoutAReaderFails) {
  survive_failed_writes();
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  EXPECT_EQ(write(ends[1], "x", 1), -1);
  EXPECT_EQ(errno, EPIPE);
  close(ends[1]);
}

TEST(Limits, WriteBeyondTheLargestFileFails) {
  survive_failed_writes();
  FILE* file = tmpfile();
  ASSERT_NE(file, nullptr);
  const rlimit none = {0, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
  EXPECT_EQ(write(fileno(file), "x", 1), -1);
  EXPECT_EQ(errno, EFBIG);
  const rlimit any = {RLIM_INFINITY, RLIM_INFINITY};
  EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &any), 0);
  fclose(file);
}

TEST(Limits, CommandsAreEndedByFailedWritesAsEver) {
  // Also when the daemon was started with SIGPIPE ignored, as systemd does.
  signal(SIGPIPE, SIG_IGN);
  survive_failed_writes();
  const int status = system("kill -PIPE $$");
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) << status;
}
