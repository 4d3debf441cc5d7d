#include "sys/probe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "unit_support.h"

TEST(Probe, NumberIsWhatTheCommandPrints) {
  int number = -1;
  EXPECT_TRUE(probe_number("echo 12", 32, &number));
  EXPECT_EQ(number, 12);
  EXPECT_TRUE(probe_number("echo 0; exit 1", 32, &number));
  EXPECT_EQ(number, 0);
  EXPECT_TRUE(probe_number("echo junk", 32, &number));
  EXPECT_EQ(number, 0);
}

TEST(Probe, SilentCommandGivesNoNumber) {
  int number = -1;
  EXPECT_FALSE(probe_number("true", 32, &number));
}

TEST(Probe, OnlyTheFirstBytesCount) {
  int number = -1;
  EXPECT_TRUE(probe_number("printf '%15s%s' '' 123", 16, &number));
  EXPECT_EQ(number, 1);
  EXPECT_TRUE(probe_number("printf '%16s%s' '' 123", 16, &number));
  EXPECT_EQ(number, 0);
  EXPECT_TRUE(probe_number("printf '%31s%s' '' 123", 32, &number));
  EXPECT_EQ(number, 1);
  EXPECT_TRUE(probe_number("printf '%32s%s' '' 123", 32, &number));
  EXPECT_EQ(number, 0);
  EXPECT_TRUE(probe_number("printf '%32s%s' '' 123", 4711, &number));
  EXPECT_EQ(number, 0) << "32 at most";
}

TEST(Probe, CommandThatCannotBeStartedGivesNoNumber) {
  fail_system_call(SYS_pipe2, EMFILE);
  int number = -1;
  EXPECT_FALSE(probe_number("echo 1", 32, &number));
}

TEST(Probe, LeavesNoChildToBeCollectedLater) {
  int number = -1;
  EXPECT_TRUE(probe_number("echo 1", 32, &number));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(Probe, LinesComeInPiecesOf63Characters) {
  std::string pieces;
  probe_lines(
      "printf 'one\\n%63s\\n%64s\\nlast' x y",
      [](const char* line, void* text) {
        *static_cast<std::string*>(text) += std::string(line) + "|";
      },
      &pieces);
  EXPECT_EQ(pieces,
            "one\n|" + std::string(62, ' ') + "x|\n|" + std::string(63, ' ') + "|y\n|last|");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the shell was collected";
}

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

TEST(Probe, MissingStandardStreamsAreReserved) {
  EXPECT_EQ(wrong_after_reserving(0, 2), 0);
  EXPECT_EQ(wrong_after_reserving(1, 1), 0);
  EXPECT_EQ(wrong_after_reserving(2, 2), 0);
}

TEST(Probe, OpenStandardStreamsAreLeftAlone) {
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
