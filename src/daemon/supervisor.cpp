#include "daemon/supervisor.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "daemon/registration.h"
#include "daemon/service.h"
#include "diag/trace.h"

// Written by the supervisor with the stop signals blocked, read by their handler; 0 when
// there is no child.
static volatile sig_atomic_t child_pid;
// Written by the handler, read by the supervisor.
static volatile sig_atomic_t stopping;

static void stop(int) {
  const int error = errno;
  stopping = 1;
  if (child_pid > 0) {
    kill(child_pid, SIGTERM);
    // A stopped child dies only after it is continued.
    kill(child_pid, SIGCONT);
  }
  errno = error;
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

// The stop signals are blocked from fork until the child is recorded: one in between
// would miss it.
static pid_t fork_child() {
  const sigset_t signals = stop_signals();
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const pid_t child = stopping ? -1 : fork();
  child_pid = child > 0 ? child : 0;
  if (child == 0) set_disposition(SIG_DFL);
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  return child;
}

// Waits for this child only: the process may have inherited others. Reaps it with the
// stop signals blocked, so that their handler never signals another process with the same
// number.
static bool wait_for_child(pid_t child, int* status) {
  siginfo_t info;
  int result;
  do {
    result = waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT);
  } while (result == -1 && errno == EINTR);
  if (result == -1) return false;
  const sigset_t signals = stop_signals();
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  waitpid(child, status, 0);
  child_pid = 0;
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  return true;
}

static void exit_if_stopping() {
  if (!stopping) return;
  unregister_service();
  exit(0);
}

void supervise() {
  set_disposition(stop);
  // If our parent ignored this signal, we would never learn of the child's end.
  signal(SIGCHLD, SIG_DFL);
  // Every child inherits it and the first one binds it. The port thus stays bound while a
  // child is replaced, and calls wait in the socket.
  int kept = -1;
  for (;;) {
    if (kept < 0) kept = make_service_socket();
    const pid_t child = fork_child();
    if (child == 0) break;
    int status = 0;
    const bool waited = child > 0 && wait_for_child(child, &status);
    exit_if_stopping();
    if (!waited) exit(1);
    if (WIFSIGNALED(status)) continue;
    trace_rpc("main", "Child exited with status = %d\n", WEXITSTATUS(status));
    if (WEXITSTATUS(status) == 0) exit(0);
  }
  trace_rpc("main", "MTK WLAN RPC Server pid=%d forked child pid=%d\n", getppid(), getpid());
  run_service(kept);
}
