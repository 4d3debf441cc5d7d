#include "rpc/supervisor.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "diag/trace.h"
#include "rpc/service.h"

// Written by the supervisor with the stop signals blocked, read by their handler.
static volatile sig_atomic_t child_pid;
// Written by the handler, read by the supervisor.
static volatile sig_atomic_t stopping;

static void stop(int) {
  stopping = 1;
  if (child_pid > 0) kill(child_pid, SIGTERM);
}

static sigset_t stop_signals() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGTERM);
  sigaddset(&set, SIGINT);
  return set;
}

static void set_disposition(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_mask = stop_signals();
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGINT, &action, nullptr);
}

// A signal between fork and the noting of the child would miss it: the stop
// signals wait that long.
static pid_t fork_child() {
  const sigset_t signals = stop_signals();
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const pid_t child = stopping ? -1 : fork();
  child_pid = child;
  if (child == 0) set_disposition(SIG_DFL);
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  return child;
}

static pid_t wait_through_signals(int* status) {
  pid_t child;
  do {
    child = wait(status);
  } while (child == -1 && errno == EINTR);
  return child;
}

static void exit_if_stopping() {
  if (!stopping) return;
  unregister_service();
  exit(0);
}

void supervise() {
  set_disposition(stop);
  for (;;) {
    if (fork_child() == 0) break;
    int status = 0;
    const pid_t ended = wait_through_signals(&status);
    exit_if_stopping();
    if (ended == -1) exit(1);
    if (WIFSIGNALED(status)) continue;
    trace_rpc("main", "Child exited with status = %d\n", WEXITSTATUS(status));
    if (WEXITSTATUS(status) == 0) exit(0);
  }
  trace_rpc("main", "MTK WLAN RPC Server pid=%d forked child pid=%d\n", getppid(), getpid());
  run_service();
}
