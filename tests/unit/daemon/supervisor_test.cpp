#include "daemon/supervisor.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "unit_support.h"

// No portmapper runs here, so a service child gives up at once.

TEST(Supervisor, EndsWithZeroWhenTheChildCannotRegister) {
  switch_log_on();
  EXPECT_EXIT(supervise(), testing::ExitedWithCode(0),
              "unable to register \\(WLAN_CONFIG_RPC_PROG, WLAN_CONFIG_API_VERSION, udp\\)\\.\n");
  const std::string log = logged();
  EXPECT_TRUE(log.starts_with("MTK WLAN RPC Server pid=")) << log;
  EXPECT_TRUE(contains(log, "bind successfully to 192.168.254.254:60001\n")) << log;
  EXPECT_TRUE(log.ends_with("Child exited with status = 0\n")) << log;
  EXPECT_EQ(count_of(log, "forked child"), 1);
}

TEST(Supervisor, TraceNamesParentAndChild) {
  switch_log_on();
  const pid_t parent = fork();
  if (parent == 0) supervise();
  EXPECT_EQ(waitpid(parent, nullptr, 0), parent);
  const std::string head =
      "MTK WLAN RPC Server pid=" + std::to_string(parent) + " forked child pid=";
  const std::string log = logged();
  ASSERT_TRUE(log.starts_with(head)) << log;
  EXPECT_GT(atoi(log.c_str() + head.size()), parent) << log;
}

// Fails only the calls that fork() makes: the leak detector clones in its own way.
static void fail_forks() {
  fail_system_call_if(SYS_clone, 0, CLONE_CHILD_SETTID | CLONE_CHILD_CLEARTID | SIGCHLD, EAGAIN);
#ifdef SYS_fork
  fail_system_call(SYS_fork, EAGAIN);
#endif
}

TEST(Supervisor, EndsWithOneWhenItCannotFork) {
  switch_log_on();
  EXPECT_EXIT(
      {
        fail_forks();
        supervise();
      },
      testing::ExitedWithCode(1), "^$");
  EXPECT_EQ(logged(), "");
}

TEST(Supervisor, ForksAgainWithoutEndUntilItIsTerminated) {
  switch_log_on();
  ASSERT_EQ(system("ip address flush to 192.168.254.254"), 0);
  const pid_t supervisor = fork();
  if (supervisor == 0) {
    static_cast<void>(!freopen("/dev/null", "w", stderr));
    supervise();
  }
  EXPECT_TRUE(wait_until([] { return count_of(logged(), "Child exited with status = 1\n") >= 5; }));
  EXPECT_EQ(kill(supervisor, SIGTERM), 0);
  int status = -1;
  EXPECT_EQ(waitpid(supervisor, &status, 0), supervisor);
  EXPECT_EQ(status, 0);
}

// The exit status of a supervisor that ends by itself; -1 when it does not.
static int status_of(pid_t supervisor) {
  int status = -1;
  if (wait_until([&] { return waitpid(supervisor, &status, WNOHANG) == supervisor; }))
    return status;
  kill(supervisor, SIGKILL);
  waitpid(supervisor, nullptr, 0);
  return -1;
}

static void stop_myself() {
  raise(SIGSTOP);
}

// Runs in the supervisor, inside fork(), when its child is already stopped.
static void terminate_before_fork_returns() {
  siginfo_t info;
  waitid(P_ALL, 0, &info, WSTOPPED | WNOWAIT);
  raise(SIGTERM);
}

TEST(Supervisor, SignalBeforeTheChildIsNotedEndsTheChildToo) {
  const pid_t supervisor = fork();
  if (supervisor == 0) {
    pthread_atfork(nullptr, terminate_before_fork_returns, stop_myself);
    supervise();
  }
  EXPECT_EQ(status_of(supervisor), 0);
}

// Shared with forked processes.
static int* forks;

static void count_fork() {
  ++*forks;
}

static ssize_t terminate_at_trace(void*, const char* text, size_t size) {
  if (std::string_view(text, size).find("Child exited") != std::string_view::npos) raise(SIGTERM);
  return static_cast<ssize_t>(size);
}

TEST(Supervisor, SignalAfterTheChildsEndStartsNoOther) {
  switch_console_on();
  ASSERT_EQ(system("ip address flush to 192.168.254.254"), 0);
  forks = static_cast<int*>(
      mmap(nullptr, sizeof *forks, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(forks, MAP_FAILED);
  const pid_t supervisor = fork();
  if (supervisor == 0) {
    pthread_atfork(nullptr, count_fork, nullptr);
    stdout = fopencookie(nullptr, "w", {nullptr, terminate_at_trace, nullptr, nullptr});
    setvbuf(stdout, nullptr, _IOLBF, 0);
    supervise();
  }
  EXPECT_EQ(status_of(supervisor), 0);
  EXPECT_EQ(*forks, 1);
}
