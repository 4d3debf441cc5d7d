#include "host/payload.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/files.h"
#include "base/report.h"
#include "host/sandbox.h"

static constexpr int kExitNotExecutable = 126;
static constexpr int kExitNotFound = 127;

payload_terminal payload_choose_terminal() {
  if (!isatty(0) || tcgetpgrp(0) != getpgrp()) return kPayloadApart;
  return isatty(1) && isatty(2) ? kPayloadForeground : kPayloadAlongside;
}

void payload_to_foreground(pid_t group) {
  // A background process that asks for the terminal is stopped unless it blocks this signal.
  sigset_t stop, before;
  sigemptyset(&stop);
  sigaddset(&stop, SIGTTOU);
  sigprocmask(SIG_BLOCK, &stop, &before);
  tcsetpgrp(0, group);
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

void payload_reset_signals() {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

// The programs beside gwbox come first, then the system's.
static void set_environment(const payload_plan& plan) {
  const char* inherited = getenv("PATH");
  std::string path = plan.program_dir + ":" + (inherited ? inherited : "/usr/bin:/bin");
  for (const char* needed : {"/usr/sbin", "/sbin"}) {
    if ((path + ":").find(std::string(":") + needed + ":") == std::string::npos) {
      path += std::string(":") + needed;
    }
  }
  setenv("PATH", path.c_str(), 1);
  setenv("GWBOX_BOARD", plan.board.c_str(), 1);
  setenv("HOSTNAME", kSandboxHostName, 1);
  unsetenv("TMPDIR");  // names a directory of the host
  unsetenv("XDG_RUNTIME_DIR");
}

static std::string shell_start_file() {
  return std::string(kSandboxRunDir) + "/bashrc";
}

// The user's own settings stay; the prompt is set last so that it takes effect. Completions come
// from the programs themselves, whatever versions are installed.
static bool write_shell_start_file() {
  return file_write(shell_start_file(),
                    "[ -r /etc/bash.bashrc ] && . /etc/bash.bashrc\n"
                    "[ -r ~/.bashrc ] && . ~/.bashrc\n"
                    "for program in gwbox wificonf; do\n"
                    "  eval \"$($program completion bash 2>/dev/null)\"\n"
                    "done\n"
                    "unset program\n"
                    "PROMPT_COMMAND=\n"
                    "PS1='(gateway) \\$ '\n");
}

static std::vector<std::string> shell_command() {
  const char* shell = getenv("SHELL");
  std::string path = shell && access(shell, X_OK) == 0 ? shell : "/bin/bash";
  // Shells in a box leave no lines in the history of whoever started it.
  setenv("HISTFILE", "/run/gwbox/history", 1);
  setenv("PS1", "(gateway) $ ", 1);
  if (!path.ends_with("/bash")) return {path};
  return {path, "--rcfile", shell_start_file()};
}

static void take_place(payload_terminal terminal) {
  switch (terminal) {
    case kPayloadApart:
      setsid();
      return;
    case kPayloadAlongside:
      return;
    case kPayloadForeground:
      setpgid(0, 0);
      payload_to_foreground(getpid());
      return;
  }
}

[[noreturn]] static void become_payload(const payload_plan& plan) {
  set_environment(plan);
  take_place(plan.terminal);
  std::vector<std::string> command = plan.command;
  // Also written for a COMMAND, which may start a shell.
  static_cast<void>(write_shell_start_file());
  if (command.empty()) command = shell_command();
  std::vector<char*> arguments;
  for (std::string& argument : command)
    arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  umask(plan.umask);
  payload_reset_signals();
  execvp(arguments[0], arguments.data());
  int status = errno == ENOENT ? kExitNotFound : kExitNotExecutable;
  report_errno(nullptr, "run %s", arguments[0]);
  _exit(status);
}

pid_t payload_start(const payload_plan& plan) {
  pid_t pid = fork();
  if (pid == 0) become_payload(plan);
  if (pid < 0) report_errno(nullptr, "start the command");
  return pid;
}
