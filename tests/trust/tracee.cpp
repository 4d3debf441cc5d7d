#include "trust/tracee.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "support/files.h"
#include "trust/heap_page.h"

namespace {

struct thread {
  role who;
  bool in_call;
  bool parked;     // stopped where it would wait for requests
  bool waits;      // its poll has no timeout
  bool restarted;  // the next call repeats the last one
  bool replaced;   // the call returns `result` instead of its own
  long number;
  long result;
};

using call_information = __ptrace_syscall_info;

}  // namespace

static std::map<pid_t, thread> threads;
static pid_t supervisor;
static pid_t server;
static int servers;
static int ended_with;
static std::set<int> kept;

static injection wanted_failure;
static const outside_call* failed_call;
static std::vector<const outside_call*> made[static_cast<int>(role::kCount)];

static kill_point wanted_kill;
static int calls_until_kill;
static std::string died_at;

static constexpr unsigned long kOptions = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK |
                                          PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC |
                                          PTRACE_O_EXITKILL;

static void resume(pid_t tid, int signal = 0) {
  ptrace(PTRACE_SYSCALL, tid, nullptr, signal);
}

static void set_register(pid_t tid, size_t offset, long value) {
  ptrace(PTRACE_POKEUSER, tid, offset, value);
}

// Skips the call and makes it return `result`.
static void skip_call(pid_t tid, thread* one, long result) {
  set_register(tid, offsetof(user, regs.orig_rax), -1);
  one->replaced = true;
  one->result = result;
}

static void fail_call(pid_t tid, thread* one, const call_information& call, const failure& how) {
  switch (how.how) {
    case failing::kRefused:
      skip_call(tid, one, -how.error);
      return;
    case failing::kLate:
      one->replaced = true;
      one->result = -how.error;
      return;
    case failing::kPart:
      // The length is the third argument of both read and write.
      set_register(tid, offsetof(user, regs.rdx), static_cast<long>((call.entry.args[2] + 1) / 2));
  }
}

static bool is_sleep(long number) {
  return number == SYS_nanosleep || number == SYS_clock_nanosleep;
}

static bool is_wait_for_requests(pid_t tid, thread* one, const call_information& call) {
  if (tid != server) return false;
  const long number = static_cast<long>(call.entry.nr);
  if (number == SYS_restart_syscall) return one->waits;
  one->waits = number == SYS_poll && static_cast<int>(call.entry.args[2]) < 0;
  return one->waits;
}

static void note_kept(const call_information& call) {
  const int file = static_cast<int>(call.entry.args[0]);
  if (call.entry.nr == SYS_close) kept.erase(file);
  if (call.entry.nr != SYS_setsockopt) return;
  if (call.entry.args[1] == SOL_SOCKET && call.entry.args[2] == SO_RCVTIMEO) kept.insert(file);
}

static void count_call(pid_t tid, thread* one, const call_information& call) {
  if (!heap_page_loaded()) return;
  const long number = static_cast<long>(call.entry.nr);
  const outside_call* row = find_outside_call(number, call.entry.args);
  if (row == nullptr) return;
  std::vector<const outside_call*>& calls = made[static_cast<int>(one->who)];
  calls.push_back(row);
  const bool hit = wanted_failure.nth == static_cast<int>(calls.size()) &&
                   wanted_failure.where == one->who && failed_call == nullptr;
  if (!hit) return;
  failed_call = row;
  fail_call(tid, one, call, failure_of(*row, wanted_failure.choice));
}

static bool dies_here(pid_t tid, long number, bool after) {
  if (tid != server || wanted_kill.nth == 0) return false;
  if (!after) ++calls_until_kill;
  if (calls_until_kill != wanted_kill.nth || wanted_kill.after != after) return false;
  const uint64_t none[6] = {};
  const outside_call* row = find_outside_call(number, none);
  died_at = row != nullptr ? row->name : "call " + std::to_string(number);
  wanted_kill.nth = 0;
  kill(server, SIGKILL);
  return true;
}

static void enter_call(pid_t tid, thread* one, const call_information& call) {
  one->in_call = true;
  const long number = static_cast<long>(call.entry.nr);
  const bool again = one->restarted && (number == one->number || number == SYS_restart_syscall);
  one->restarted = false;
  if (number != SYS_restart_syscall) one->number = number;
  if (is_wait_for_requests(tid, one, call)) {
    one->parked = true;
    return;
  }
  if (one->who == role::kServer) note_kept(call);
  if (is_sleep(number) && one->who != role::kSupervisor) {
    skip_call(tid, one, 0);
  } else if (!again) {
    count_call(tid, one, call);
  }
  dies_here(tid, number, false);
  resume(tid);
}

// -ERESTARTSYS, -ERESTARTNOINTR, -ERESTARTNOHAND and -ERESTART_RESTARTBLOCK.
static bool is_restart(long result) {
  return result == -512 || result == -513 || result == -514 || result == -516;
}

static void leave_call(pid_t tid, thread* one, const call_information& call) {
  one->in_call = false;
  one->restarted = is_restart(static_cast<long>(call.exit.rval)) && !one->replaced;
  if (one->replaced) set_register(tid, offsetof(user, regs.rax), one->result);
  one->replaced = false;
  dies_here(tid, one->number, true);
  resume(tid);
}

static void stop_at_call(pid_t tid, thread* one) {
  call_information call = {};
  ptrace(PTRACE_GET_SYSCALL_INFO, tid, sizeof call, &call);
  if (call.op == PTRACE_SYSCALL_INFO_ENTRY)
    enter_call(tid, one, call);
  else
    leave_call(tid, one, call);
}

static int status_field(pid_t tid, const char* field) {
  const std::string text = read_file("/proc/" + std::to_string(tid) + "/status");
  const size_t at = text.find(std::string("\n") + field + ":\t");
  return at == text.npos ? 0 : atoi(text.c_str() + at + strlen(field) + 3);
}

// Adds a new process or thread of the daemon, which is the service child or a worker.
static thread* adopt(pid_t tid) {
  thread one = {};
  one.who = role::kWorker;
  if (server == 0 || status_field(tid, "Tgid") == tid) {
    one.who = role::kServer;
    server = tid;
    ++servers;
    kept.clear();
  }
  return &(threads[tid] = one);
}

static void note_end(pid_t tid, int status) {
  threads.erase(tid);
  if (tid == supervisor) {
    supervisor = 0;
    ended_with = status;
  }
  if (tid == server) {
    server = 0;
    // The next child is left undisturbed.
    if (wanted_failure.where != role::kSupervisor) wanted_failure.nth = 0;
  }
}

static void handle(pid_t tid, int status) {
  if (WIFEXITED(status) || WIFSIGNALED(status)) {
    note_end(tid, status);
    return;
  }
  const auto found = threads.find(tid);
  thread* one = found != threads.end() ? &found->second : adopt(tid);
  const int signal = WSTOPSIG(status);
  if (signal == (SIGTRAP | 0x80)) {
    stop_at_call(tid, one);
  } else {
    // A ptrace event is not a signal to pass on.
    const bool event = status >> 16 != 0 || signal == SIGTRAP;
    resume(tid, event ? 0 : signal);
  }
}

static char state_of(pid_t tid) {
  const std::string text = read_file("/proc/" + std::to_string(tid) + "/stat");
  const size_t end = text.rfind(')');
  return end == text.npos || end + 2 >= text.size() ? '?' : text[end + 2];
}

static bool in_futex(const thread& one) {
  return one.in_call && one.number == SYS_futex;
}

// A worker in a futex may be about to leave it or may wait there for good. No ptrace stop
// shows which, only its state in /proc.
static bool someone_will_stop() {
  for (const auto& [tid, one] : threads) {
    if (tid != supervisor && !one.parked && !in_futex(one)) return true;
  }
  return server == 0;
}

static bool is_quiet() {
  if (server == 0 || !threads[server].parked) return false;
  for (const auto& [tid, one] : threads) {
    if (one.who == role::kWorker && (!in_futex(one) || state_of(tid) != 'S')) return false;
  }
  return true;
}

static void ring(int) {}

// Interrupts waitpid every second, so that a daemon that hangs is noticed.
static void set_alarm(bool on) {
  struct sigaction action = {};
  action.sa_handler = ring;
  sigaction(SIGALRM, &action, nullptr);
  const itimerval every = {{on ? 1 : 0, 0}, {on ? 1 : 0, 0}};
  setitimer(ITIMER_REAL, &every, nullptr);
}

static stand pump(double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (supervisor != 0) {
    int status = 0;
    const pid_t tid = waitpid(-1, &status, __WALL | (someone_will_stop() ? 0 : WNOHANG));
    if (tid > 0) {
      handle(tid, status);
      continue;
    }
    if (is_quiet()) return stand::kQuiet;
    if (std::chrono::steady_clock::now() > end) return stand::kHung;
    if (tid == 0) usleep(20);
  }
  return stand::kEnded;
}

stand run_until_quiet(double seconds) {
  set_alarm(true);
  const stand result = pump(seconds);
  set_alarm(false);
  return result;
}

void wake(int error) {
  if (server == 0 || !threads[server].parked) return;
  threads[server].parked = false;
  if (error != 0) skip_call(server, &threads[server], -error);
  resume(server);
}

static void redirect(int stream, const char* path) {
  const int file = open(path, O_WRONLY | O_CREAT | O_APPEND, 0644);
  dup2(file, stream);
  close(file);
}

static void become_daemon(const std::string& path, const std::vector<std::string>& environment) {
  redirect(STDOUT_FILENO, "/tmp/daemon.out");
  redirect(STDERR_FILENO, "/tmp/daemon.err");
  close_range(STDERR_FILENO + 1, ~0U, 0);
  for (const std::string& setting : environment)
    putenv(strdup(setting.c_str()));
  raise(SIGSTOP);
  execl(path.c_str(), "wificonfd", nullptr);
  _exit(127);
}

void start_traced(const std::string& path, const std::vector<std::string>& environment) {
  heap_page_reset();
  threads.clear();
  server = 0;
  servers = 0;
  supervisor = fork();
  if (supervisor == 0) become_daemon(path, environment);
  int status = 0;
  waitpid(supervisor, &status, WUNTRACED);
  thread one = {};
  one.who = role::kSupervisor;
  threads[supervisor] = one;
  ptrace(PTRACE_SEIZE, supervisor, nullptr, kOptions);
  kill(supervisor, SIGCONT);
}

void stop_traced() {
  if (server != 0) kill(server, SIGKILL);
  if (supervisor != 0) kill(supervisor, SIGKILL);
  while (supervisor != 0 || server != 0) {
    int status = 0;
    const pid_t tid = waitpid(-1, &status, __WALL);
    if (tid < 0) break;
    handle(tid, status);
  }
  threads.clear();
  supervisor = server = 0;
}

void arm(const injection& wanted) {
  wanted_failure = wanted;
  failed_call = nullptr;
  for (std::vector<const outside_call*>& calls : made)
    calls.clear();
}

const outside_call* injected() {
  return failed_call;
}

const std::vector<const outside_call*>& calls_made(role who) {
  return made[static_cast<int>(who)];
}

void arm_kill(const kill_point& wanted) {
  wanted_kill = wanted;
  calls_until_kill = 0;
  died_at.clear();
}

const std::string& killed_at() {
  return died_at;
}

pid_t service_pid() {
  return server;
}

int service_children() {
  return servers;
}

int supervisor_status() {
  return ended_with;
}

const std::set<int>& kept_descriptors() {
  return kept;
}
