#include "control/first_process.h"

#include <dirent.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include <vector>

#include "base/files.h"
#include "base/report.h"
#include "companions/start.h"
#include "control/reach.h"
#include "control/run_link.h"
#include "control/serve.h"
#include "control/start.h"
#include "gateway/around.h"
#include "gateway/state.h"
#include "gateway/watch.h"
#include "host/firmware.h"
#include "host/interfaces.h"
#include "host/kernel_files.h"
#include "host/namespaces.h"
#include "host/portmap.h"
#include "host/profiles.h"
#include "trap/filter.h"

// How long the box's processes have after SIGTERM before the kernel kills them.
static constexpr int64_t kGraceUs = 2000000;

// After a look at files and calls on the wire, how long until the next that nothing else asks for.
static constexpr int64_t kNewsUs = 10000;

struct box {
  trap_state trap;
  int link;
  int signals;  // signalfd
  int control;  // listening
  int name;     // listening, or -1
  std::vector<int> clients;
  std::vector<control_waiter> waiters;
  int64_t news_us;  // until then, files and calls on the wire do not wake the loop
  box_start start;
  pid_t portmapper;  // 0: none
  pid_t payload;     // 0: not yet
  bool own_job;      // the payload is a process group that shares the terminal with gwbox in turns
  int status;        // the box's exit status, once ending
  bool ending;
  int64_t give_up_us;  // when ending: monotonic time until which processes are waited for
};

static int status_of(int wait_status) {
  return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

static bool open_signals(box& b) {
  sigset_t watched;
  sigemptyset(&watched);
  for (int number : {SIGCHLD, SIGTERM, SIGINT, SIGHUP})
    sigaddset(&watched, number);
  sigprocmask(SIG_BLOCK, &watched, nullptr);
  b.signals = signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
  return b.signals >= 0 || report_errno(nullptr, "open a signal descriptor");
}

static bool open_trap(box& b, const box_plan& plan) {
  driver_init(b.trap.driver, *plan.hardware, plan.around);
  b.trap.driver.clock.start_us = plan.start_us;
  b.trap.modules.hardware = plan.hardware;
  vlan_init(b.trap.vlans);
  b.trap.socket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (b.trap.socket < 0) return report_errno(nullptr, "open a socket");
  b.trap.links = links_open();
  if (b.trap.links < 0 || !journal_open(b.trap.log, plan.log_fd, plan.start_us)) return false;
  rpc_calls_open(b.trap.calls);
  return true;
}

// Calls ACT for every process in the box except this one and the portmapper; returns their number.
template <typename Act>
static int for_each_process(const box& b, Act act) {
  int count = 0;
  DIR* processes = opendir("/proc");
  if (!processes) return 0;
  while (struct dirent* entry = readdir(processes)) {
    pid_t pid = isdigit(entry->d_name[0]) ? atoi(entry->d_name) : 0;
    if (pid <= 1 || pid == b.portmapper) continue;
    act(pid);
    ++count;
  }
  closedir(processes);
  return count;
}

// The portmapper stays until the others are gone, so that services can unregister.
static void begin_end(box& b, int status) {
  if (b.ending) return;
  b.ending = true;
  b.status = status;
  b.give_up_us = journal_now_us() + kGraceUs;
  for_each_process(b, [](pid_t pid) {
    kill(pid, SIGTERM);
    kill(pid, SIGCONT);
  });
}

// The outer shell must learn that its job has stopped, or nobody would have the terminal. A payload
// in gwbox's own process group stops together with gwbox.
static void payload_changed(box& b, int wait_status) {
  if (!WIFSTOPPED(wait_status)) return begin_end(b, status_of(wait_status));
  if (b.own_job) static_cast<void>(send(b.link, &kLinkStopped, 1, MSG_NOSIGNAL));
}

// No message if it was ended on purpose.
static void portmap_changed(box& b, int wait_status) {
  if (WIFSTOPPED(wait_status)) return;
  b.portmapper = 0;
  bool on_purpose =
      WIFSIGNALED(wait_status) ? WTERMSIG(wait_status) == SIGKILL : WEXITSTATUS(wait_status) == 0;
  if (!on_purpose && !b.ending) portmap_report_end(wait_status);
}

static void reap(box& b) {
  int status = 0;
  for (pid_t pid; (pid = waitpid(-1, &status, WNOHANG | WUNTRACED)) > 0;) {
    if (pid == b.payload) payload_changed(b, status);
    if (pid == b.portmapper) portmap_changed(b, status);
  }
}

static void take_signals(box& b) {
  signalfd_siginfo info;
  while (read(b.signals, &info, sizeof info) == sizeof info) {
    int number = static_cast<int>(info.ssi_signo);
    if (number != SIGCHLD) begin_end(b, 128 + number);
  }
  reap(b);
}

static void take_link(box& b) {
  char word = 0;
  if (recv(b.link, &word, 1, MSG_DONTWAIT) <= 0) {
    b.link = -1;
    return begin_end(b, 128 + SIGKILL);
  }
  if (word == kLinkForeground) payload_to_foreground(b.payload);
  kill(-b.payload, SIGCONT);
}

static void take_control(box& b) {
  int client = control_accept(b.control);
  if (client >= 0) b.clients.push_back(client);
}

// The shorter of two waiting times; -1 is without limit.
static int sooner(int a, int b) {
  if (a < 0 || b < 0) return a < 0 ? b : a;
  return a < b ? a : b;
}

// Milliseconds that the loop may sleep; -1: without limit.
static int next_timeout(box& b) {
  around_go_on(b.trap);
  int timeout = sooner(trap_run_delayed(b.trap), around_timeout_ms(b.trap.driver));
  timeout = sooner(timeout, control_answer_waiters(b.waiters, b.trap));
  if (int64_t left = b.news_us - journal_now_us(); left > 0) {
    timeout = sooner(timeout, static_cast<int>(left / 1000) + 1);
  }
  if (!b.ending) return timeout;
  int64_t left = (b.give_up_us - journal_now_us() + 999) / 1000;
  int grace = left < 0 ? 0 : static_cast<int>(left);
  return sooner(timeout, grace);
}

static void take_news(box& b) {
  rpc_calls_catch_up(b.trap.calls);
  trap_catch_up(b.trap);
  b.news_us = journal_now_us() + kNewsUs;
}

static void serve_once(box& b) {
  bool news = journal_now_us() >= b.news_us;
  // Until everything has started, who starts it waits for the processes.
  int signals = b.payload == 0 ? -1 : b.signals;
  std::vector<pollfd> watched = {
      {b.trap.listener, POLLIN, 0}, {signals, POLLIN, 0},
      {b.control, POLLIN, 0},       {b.link, POLLIN, 0},
      {b.trap.links, POLLIN, 0},    {b.trap.sysfs.notify, POLLIN, 0},
      {b.name, POLLIN, 0},          {news ? b.trap.files.fd : -1, POLLIN, 0},
      {b.start.steps, POLLIN, 0}};
  size_t fixed = watched.size();
  for (int client : b.clients)
    watched.push_back({client, POLLIN, 0});
  size_t clients = b.clients.size();
  for (const auto& [pid, process] : b.trap.processes.known)
    watched.push_back({process.fd, POLLIN, 0});
  if (poll(watched.data(), watched.size(), next_timeout(b)) < 0) return;
  if (watched[0].revents) trap_take(b.trap);
  if (watched[4].revents || watched[5].revents) trap_catch_up(b.trap);
  if (watched[7].revents || watched[9].revents) take_news(b);
  for (size_t i = fixed + clients; i < watched.size(); ++i) {
    if (watched[i].revents) return watch_ended(b.trap);
  }
  if (watched[1].revents) take_signals(b);
  if (watched[3].revents) take_link(b);
  if (watched[6].revents) reach_serve(b.name);
  for (size_t i = clients; i-- > 0;) {
    if (!watched[fixed + i].revents) continue;
    control_serve(b.clients[i], b.trap, b.waiters);
    b.clients.erase(b.clients.begin() + static_cast<ptrdiff_t>(i));
  }
  if (watched[2].revents) take_control(b);
}

// True when nothing is left to wait for. Until then trapped calls are still answered.
static bool ended(box& b) {
  if (!b.ending) return false;
  return journal_now_us() >= b.give_up_us || for_each_process(b, [](pid_t) {}) == 0;
}

static bool build(box& b, const box_plan& plan) {
  if (plan.user_namespace && !namespaces_map_root(plan.uid, plan.gid)) return false;
  if (!sandbox_enter(plan.sandbox) || !firmware_install() || !kernel_files_install(b.trap.sysfs)) {
    return false;
  }
  if (!companions_tell_start(plan.start_us) || !open_signals(b) || !open_trap(b, plan))
    return false;
  if (!around_publish(b.trap.driver) || !net_start() || !profiles_install(*plan.hardware))
    return false;
  b.control = control_listen();
  trap_begin(b.trap);
  // The portmapper and the companions start up while the radios are created.
  if (b.control < 0 || !file_watch_open(b.trap.files) ||
      !start_begin(b.start, plan, b.trap.listener))
    return false;
  return plan.cold || trap_load_modules(b.trap);
}

// One step of the start is done: everything but the payload runs, or the payload as well.
static bool go_on_starting(box& b) {
  switch (start_step_done(b.start)) {
    case start_step::kServices:
      b.portmapper = b.start.portmapper.pid;
      if (b.name >= 0 && !reach_listen(b.name)) return false;
      start_go_on(b.start);
      return true;
    case start_step::kPayload:
      b.payload = b.start.payload;
      return true;
    case start_step::kFailed:
      break;
  }
  return false;
}

// What is started needs the box's answers.
static bool start(box& b) {
  while (b.payload == 0) {
    serve_once(b);
    if (start_is_waiting(b.start) && !go_on_starting(b)) return false;
  }
  return true;
}

// The kernel kills whatever is left, such as the portmapper, when this process ends.
int box_main(const box_plan& plan) {
  box b = {};
  b.link = plan.link;
  b.name = plan.name;
  b.own_job = plan.payload.terminal == kPayloadForeground;
  umask(022);
  if (!build(b, plan) || !start(b)) return kExitBoxFailed;
  while (!ended(b))
    serve_once(b);
  return b.status;
}
