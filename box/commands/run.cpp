#include "commands/run.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <cstdlib>

#include <string>

#include "base/files.h"
#include "base/journal.h"
#include "base/report.h"
#include "control/connection.h"
#include "control/first_process.h"
#include "control/reach.h"
#include "control/run_link.h"
#include "host/namespaces.h"

static bool find_program_dir(std::string& dir) {
  char path[PATH_MAX] = "";
  if (readlink("/proc/self/exe", path, sizeof path - 1) < 0) {
    return report_errno("is /proc mounted?", "find the directory of gwbox");
  }
  dir = path_parent(path);
  return true;
}

static bool find_work_dir(std::string& dir) {
  char path[PATH_MAX];
  if (!getcwd(path, sizeof path)) return report_errno(nullptr, "find the current directory");
  dir = path;
  return true;
}

static bool open_log(const std::string& file, int& fd) {
  fd = -1;
  if (file.empty()) return true;
  fd = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  return fd >= 0 || report_errno(nullptr, "open %s for the journal", file.c_str());
}

static bool make_plan(const args& a, const board& hardware, box_plan& plan) {
  plan.hardware = &hardware;
  plan.uid = geteuid();
  plan.gid = getegid();
  plan.portmap = a.portmap;
  plan.companions = a.companions;
  plan.cold = a.cold;
  plan.start_us = journal_now_us();
  plan.user_namespace = namespaces_need_user();
  plan.sandbox.pci_devices = board_pci_devices(hardware);
  plan.payload.command = a.payload;
  plan.payload.board = hardware.name;
  plan.payload.terminal = payload_choose_terminal();
  plan.payload.umask = umask(022);
  umask(plan.payload.umask);
  if (!find_program_dir(plan.sandbox.program_dir) || !find_work_dir(plan.sandbox.work_dir)) {
    return false;
  }
  plan.payload.program_dir = plan.sandbox.program_dir;
  return open_log(a.log_file, plan.log_fd);
}

// The box must end with the process outside, however that one ends. If it ended before the prctl
// call, its end of the link is closed already.
static int live_in_box(const box_plan& plan) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  pollfd link = {plan.link, POLLIN, 0};
  if (poll(&link, 1, 0) > 0) return kExitBoxFailed;
  return box_main(plan);
}

// When the payload stops, this process stops as well, so that the shell outside takes the terminal
// back. When that shell continues it, so does the payload, in the foreground or the background.
static void follow_stop(int link) {
  payload_to_foreground(getpgrp());
  kill(getpid(), SIGSTOP);
  char word = tcgetpgrp(0) == getpgrp() ? kLinkForeground : kLinkContinue;
  static_cast<void>(send(link, &word, 1, MSG_NOSIGNAL));
}

static void forward_signals(int signals, pid_t box) {
  signalfd_siginfo info;
  while (read(signals, &info, sizeof info) == sizeof info) {
    int number = static_cast<int>(info.ssi_signo);
    if (number != SIGCHLD) kill(box, number);
  }
}

static int await_end(pid_t box, int link, int signals) {
  int status = 0;
  pollfd watched[] = {{signals, POLLIN, 0}, {link, POLLIN, 0}};
  while (waitpid(box, &status, WNOHANG) == 0) {
    if (poll(watched, 2, -1) < 0) continue;
    if (watched[0].revents) forward_signals(signals, box);
    char word = 0;
    ssize_t got = watched[1].revents ? recv(link, &word, 1, MSG_DONTWAIT) : 0;
    if (got > 0 && word == kLinkStopped) follow_stop(link);
    if (watched[1].revents && got <= 0) watched[1].fd = -1;
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  report("the box was ended by signal %d", WTERMSIG(status));
  return 128 + WTERMSIG(status);
}

// Signals are blocked before the box exists, so that none is lost; the payload unblocks them.
static int block_signals() {
  sigset_t watched;
  sigemptyset(&watched);
  for (int number : {SIGCHLD, SIGTERM, SIGINT, SIGHUP})
    sigaddset(&watched, number);
  signal(SIGCHLD, SIG_DFL);
  sigprocmask(SIG_BLOCK, &watched, nullptr);
  return signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
}

static bool inside_a_box() {
  if (access(kControlPath, F_OK) != 0) return false;
  report("this is inside a box already, and a box cannot run inside a box");
  return true;
}

static int start_and_await(box_plan& plan, int own_link) {
  int signals = block_signals();
  pid_t box = namespaces_clone(plan.user_namespace);
  if (box < 0) return kExitBoxFailed;
  if (box == 0) {
    close(own_link);
    close(signals);
    _exit(live_in_box(plan));
  }
  close(plan.link);
  if (plan.name >= 0) close(plan.name);
  int status = await_end(box, own_link, signals);
  if (plan.payload.terminal == kPayloadForeground) payload_to_foreground(getpgrp());
  return status;
}

static const board* choose_board(const args& a, const scenario& around) {
  std::string name = !a.board.empty() ? a.board : around.board;
  const board* hardware = board_find(name.empty() ? kBoardDefault : name);
  if (!hardware) report("unknown board \"%s\": there are %s", name.c_str(), board_names().c_str());
  return hardware;
}

int run_box(const args& a) {
  box_plan plan = {};
  plan.name = -1;
  if (!scenario_load(a.scenario, plan.around)) return kExitUsage;
  if (a.speed >= 0) scenario_set_speed(plan.around, a.speed);
  const board* hardware = choose_board(a, plan.around);
  if (!hardware || (!a.name.empty() && !reach_take_name(a.name, plan.name))) return kExitUsage;
  int links[2];
  if (inside_a_box() || !make_plan(a, *hardware, plan)) return kExitBoxFailed;
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, links) < 0) {
    report_errno(nullptr, "make a socket pair");
    return kExitBoxFailed;
  }
  plan.link = links[1];
  return start_and_await(plan, links[0]);
}
