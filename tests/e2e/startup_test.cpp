#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "support/daemon.h"
#include "support/files.h"
#include "support/wire.h"

static constexpr char kRegistered[] = "rpcinfo -p | grep -w 538121015";

TEST(Startup, RegistersItsProgramWithThePortmapper) {
  start_daemon();
  EXPECT_TRUE(wait_until([] { return !run(kRegistered).empty(); }));
  const std::string row = run(kRegistered);
  EXPECT_NE(row.find("60001"), row.npos) << row;
  EXPECT_NE(row.find("udp"), row.npos) << row;
  EXPECT_EQ(row.find("tcp"), row.npos) << row;
}

TEST(Startup, RemovesAnEarlierRegistration) {
  start_daemon();
  const pid_t second = start_supervisor();
  EXPECT_TRUE(wait_until([] { return run(kRegistered).empty(); }))
      << "a starting daemon removes the registration that it finds";
  EXPECT_EQ(end_process(second, SIGTERM), 0);
}

TEST(Startup, TracesForkAndBindWithTheRealPids) {
  write_file("/tmp/wlandbg", "");
  const pid_t supervisor = start_daemon();
  const std::string child = std::to_string(service_child(supervisor));
  EXPECT_NE(daemon_output().find("\033[1;32;40m[RPC] main\033[0m MTK WLAN RPC Server pid=" +
                                 std::to_string(supervisor) + " forked child pid=" + child + "\n"),
            std::string::npos)
      << daemon_output();
  EXPECT_NE(daemon_output().find("[RPC] build_rpc_sockt\033[0m MTK WLAN RPC server bind "
                                 "successfully to 192.168.254.254:60001\n"),
            std::string::npos)
      << daemon_output();
}

TEST(Startup, WithoutProbeOutputItStartsAnyway) {
  // Without pgrep and grep in the PATH, the probe prints nothing.
  start_daemon({"PATH=/nonexistent"});
  EXPECT_TRUE(daemon_answers());
}

TEST(Startup, LeavesNoZombieOfTheProbe) {
  const pid_t supervisor = start_daemon();
  EXPECT_EQ(run("ps --ppid " + std::to_string(supervisor) + " -o stat= | grep -c Z"), "0\n");
}

TEST(Startup, HeldInstanceLockEndsItWithStatusZero) {
  write_file("/tmp/wlandbg", "");
  const int lock = open("/tmp/.wlanrpc_lock", O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  struct flock whole = {};
  whole.l_type = F_WRLCK;
  ASSERT_EQ(fcntl(lock, F_SETLK, &whole), 0);
  EXPECT_EQ(wait_for_end(start_supervisor()), 0);
  EXPECT_NE(daemon_output().find("[RPC] main\033[0m Process already running\n"), std::string::npos);
  close(lock);
}

TEST(Startup, UnopenableInstanceLockEndsItWithStatusZero) {
  write_file("/tmp/wlandbg", "");
  mkdir("/tmp/.wlanrpc_lock", 0755);
  EXPECT_EQ(wait_for_end(start_supervisor()), 0);
  EXPECT_NE(daemon_output().find("Process already running\n"), std::string::npos);
}

TEST(Supervision, KilledChildIsReplacedAtOnce) {
  const pid_t supervisor = start_daemon();
  for (const int signal : {SIGKILL, SIGTERM, SIGABRT, SIGINT}) {
    const pid_t child = service_child(supervisor);
    kill(child, signal);
    EXPECT_TRUE(wait_until([&] {
      const pid_t next = service_child(supervisor);
      return next != 0 && next != child && daemon_answers();
    })) << "signal "
        << signal;
  }
  EXPECT_EQ(daemon_output(), "");
}

TEST(Supervision, KilledSupervisorLeavesTheChildServing) {
  const pid_t supervisor = start_daemon();
  const pid_t child = service_child(supervisor);
  EXPECT_EQ(end_process(supervisor, SIGKILL), 128 + SIGKILL);
  EXPECT_TRUE(daemon_answers());
  EXPECT_EQ(kill(child, 0), 0);
}

TEST(Supervision, TermAndIntEndTheChildAndRemoveTheRegistration) {
  for (const int signal : {SIGTERM, SIGINT}) {
    const pid_t supervisor = start_daemon();
    ASSERT_TRUE(wait_until([] { return !run(kRegistered).empty(); }));
    const pid_t child = service_child(supervisor);
    EXPECT_EQ(end_process(supervisor, signal), 0);
    EXPECT_TRUE(wait_until([&] { return kill(child, 0) != 0; }));
    EXPECT_EQ(run(kRegistered), "");
    EXPECT_FALSE(daemon_answers());
  }
}

TEST(Supervision, SecondDaemonFailsAtBindInATightLoopBesideTheFirst) {
  write_file("/tmp/wlandbg", "");
  start_daemon();
  const pid_t second = start_supervisor();
  EXPECT_TRUE(
      wait_until([] { return count_of(daemon_errors(), "bind: Address already in use\n") >= 10; }));
  EXPECT_TRUE(wait_until([] {
    return count_of(daemon_output(), "[RPC] main\033[0m Child exited with status = 1\n") >= 10;
  }));
  EXPECT_TRUE(daemon_answers());
  EXPECT_EQ(daemon_output().find("Process already running"), std::string::npos);
  EXPECT_EQ(daemon_errors().find("was replaced"), std::string::npos);
  EXPECT_EQ(end_process(second, SIGTERM), 0);
}

TEST(Supervision, WithoutTheAddressItTriesUntilTheAddressIsThere) {
  ASSERT_EQ(run("ip address del 192.168.254.254/24 dev eth0"), "");
  const pid_t supervisor = start_supervisor();
  EXPECT_TRUE(wait_until(
      [] { return count_of(daemon_errors(), "bind: Cannot assign requested address\n") >= 10; }));
  run("ip address add 192.168.254.254/24 dev eth0");
  EXPECT_TRUE(wait_until(daemon_answers));
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
}

TEST(Supervision, TermEndsTheTightLoop) {
  ASSERT_EQ(run("ip address del 192.168.254.254/24 dev eth0"), "");
  const pid_t supervisor = start_supervisor();
  EXPECT_TRUE(wait_until([] { return count_of(daemon_errors(), "bind: ") >= 3; }));
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
  EXPECT_EQ(run("pgrep -c wificonfd"), "0\n");
}

// How many descriptors the process has besides the standard streams. Fails the test if a
// program that it starts would inherit one.
static int descriptors_closed_on_exec(pid_t process) {
  int checked = 0;
  const std::string fds = "/proc/" + std::to_string(process) + "/fdinfo";
  for (const auto& entry : std::filesystem::directory_iterator(fds)) {
    if (stoi(entry.path().filename().string()) <= 2) continue;
    const std::string info = read_file(entry.path());
    const size_t flags = info.find("flags:");
    EXPECT_NE(flags, info.npos);
    EXPECT_NE(stoul(info.substr(flags + 6), nullptr, 8) & O_CLOEXEC, 0u)
        << run("ls -l /proc/" + std::to_string(process) + "/fd");
    ++checked;
  }
  return checked;
}

TEST(Descriptors, AllOfThemCloseOnExec) {
  const pid_t supervisor = start_daemon();
  EXPECT_GE(descriptors_closed_on_exec(service_child(supervisor)), 1);
  // Only the service's socket.
  EXPECT_EQ(descriptors_closed_on_exec(supervisor), 1);
}

TEST(Descriptors, ChildTakesWhatItMayUpTo16384) {
  const pid_t supervisor = start_supervisor_through("ulimit -Sn $(ulimit -Hn); exec ");
  ASSERT_TRUE(wait_until(daemon_answers));
  const std::string limits =
      read_file("/proc/" + std::to_string(service_child(supervisor)) + "/limits");
  const size_t row = limits.find("Max open files");
  ASSERT_NE(row, limits.npos);
  const long most = stol(run("ulimit -Hn"));
  EXPECT_EQ(atol(limits.c_str() + row + 14), std::min(most, 16384L));
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
}

TEST(Descriptors, ClosedStandardStreamsAreNotTakenBySockets) {
  run(daemon_path() + " <&- >&- 2>&- &");
  ASSERT_TRUE(wait_until(daemon_answers));
  for (const std::string& pid : {run("pgrep -o wificonfd"), run("pgrep -n wificonfd")}) {
    for (int stream = 0; stream <= 2; ++stream) {
      const std::string link =
          "/proc/" + std::to_string(stoi(pid)) + "/fd/" + std::to_string(stream);
      EXPECT_EQ(std::filesystem::read_symlink(link), "/dev/null") << link;
    }
  }
}

static pid_t newest_child(pid_t process) {
  return atoi(run("pgrep -n -P " + std::to_string(process)).c_str());
}

TEST(Supervision, OtherPeoplesChildrenAreNotTakenForTheService) {
  // The shell leaves the daemon a child of its own, which exits with status 0.
  const pid_t supervisor = start_supervisor_through("sleep 0.05 & exec ");
  ASSERT_TRUE(wait_until(daemon_answers));
  ASSERT_TRUE(wait_until([] { return run("ps -o stat= -C sleep").starts_with("Z"); }));
  const pid_t child = newest_child(supervisor);
  EXPECT_EQ(kill(child, SIGKILL), 0);
  EXPECT_TRUE(wait_until([&] { return newest_child(supervisor) != child && daemon_answers(); }));
  EXPECT_TRUE(run("ps -o stat= -C sleep").starts_with("Z"));
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
}

TEST(Supervision, IgnoredChildSignalsDoNotHideTheChildsEnd) {
  const pid_t supervisor = start_supervisor_through("trap '' CHLD; exec ");
  ASSERT_TRUE(wait_until(daemon_answers));
  const pid_t child = service_child(supervisor);
  kill(child, SIGKILL);
  EXPECT_TRUE(wait_until([&] { return service_child(supervisor) != child && daemon_answers(); }));
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
}

TEST(Supervision, TermEndsAStoppedChildToo) {
  const pid_t supervisor = start_daemon();
  const pid_t child = service_child(supervisor);
  kill(child, SIGSTOP);
  EXPECT_EQ(end_process(supervisor, SIGTERM), 0);
  EXPECT_NE(kill(child, 0), 0);
}
