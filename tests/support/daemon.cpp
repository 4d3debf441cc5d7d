#include "support/daemon.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "support/files.h"
#include "support/wire.h"

static constexpr char kOutput[] = "/tmp/daemon.out";
static constexpr char kErrors[] = "/tmp/daemon.err";

static std::string in_build(const char* path) {
  const char* build = getenv("WIFICONFD_BUILD");
  return std::string(build != nullptr ? build : BUILD_DIRECTORY) + path;
}

std::string daemon_path() {
  return in_build("/wificonfd");
}

std::string host_library_directory() {
  return in_build("/tests/host");
}

static void redirect(int stream, const char* path) {
  const int file = open(path, O_WRONLY | O_CREAT | O_APPEND, 0644);
  dup2(file, stream);
  close(file);
}

// A sanitizer report from the daemon fails the test. Each process runs only one test.
static void check_reports() {
  for (const char* sign :
       {"AddressSanitizer", "LeakSanitizer", "ThreadSanitizer", "runtime error:"}) {
    if (daemon_errors().find(sign) == std::string::npos) continue;
    fprintf(stderr, "the daemon printed:\n%s\n", daemon_errors().c_str());
    _exit(1);
  }
}

// Forks for the daemon: returns 0 in it and its pid in the test.
static pid_t fork_daemon() {
  static const int kRegistered = atexit(check_reports);
  static_cast<void>(kRegistered);
  const pid_t pid = fork();
  if (pid != 0) return pid;
  redirect(STDOUT_FILENO, kOutput);
  redirect(STDERR_FILENO, kErrors);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  return 0;
}

pid_t start_supervisor_through(const std::string& before) {
  const pid_t pid = fork_daemon();
  if (pid != 0) return pid;
  execl("/bin/bash", "bash", "-c", (before + daemon_path()).c_str(), nullptr);
  _exit(127);
}

pid_t start_supervisor(const std::vector<std::string>& environment) {
  const pid_t pid = fork_daemon();
  if (pid != 0) return pid;
  for (const std::string& setting : environment)
    putenv(strdup(setting.c_str()));
  execl(daemon_path().c_str(), "wificonfd", nullptr);
  _exit(127);
}

bool daemon_answers() {
  reply_message reply;
  return call(0, "", &reply, 0.2) && reply.accept_status == kAcceptSuccess;
}

pid_t start_daemon(const std::vector<std::string>& environment) {
  const pid_t pid = start_supervisor(environment);
  EXPECT_TRUE(wait_until(daemon_answers)) << daemon_errors();
  return pid;
}

pid_t service_child(pid_t supervisor) {
  const std::string path =
      "/proc/" + std::to_string(supervisor) + "/task/" + std::to_string(supervisor) + "/children";
  return atoi(read_file(path).c_str());
}

static int status_of(int ended) {
  return WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
}

int wait_for_end(pid_t pid) {
  int ended = 0;
  const bool gone = wait_until([&] { return waitpid(pid, &ended, WNOHANG) == pid; });
  return gone ? status_of(ended) : -1;
}

int end_process(pid_t pid, int signal) {
  kill(pid, signal);
  return wait_for_end(pid);
}

std::string daemon_output() {
  return read_file(kOutput);
}

std::string daemon_errors() {
  return read_file(kErrors);
}
