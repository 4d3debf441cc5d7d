#include "gateway/watch.h"

#include <fcntl.h>
#include <limits.h>
#include <linux/audit.h>
#include <net/if.h>
#include <signal.h>
#include <unistd.h>
#include <cstdlib>
#include <cstring>

#include "base/files.h"
#include "gateway/effects.h"

static constexpr size_t kWordsMax = 64;
static constexpr size_t kWordMax = 4096;
static constexpr size_t kUnixPathAt = 2;  // after the address family
static constexpr size_t kUnixPathMax = 108;

static process_actor actor_of(trap_state& trap, const trap_call& c) {
  pid_t pid = 0;
  std::string comm;
  caller_identify(trap.caller, c.tid, pid, comm);
  return process_actor_of(trap.processes, trap.calls, c.tid, pid, comm);
}

static std::string text_at(const trap_call& c, uint64_t address) {
  std::string text;
  static_cast<void>(caller_read_text(c.tid, address, PATH_MAX, text));
  return text;
}

static std::string link_text(const std::string& path) {
  char target[PATH_MAX] = "";
  return readlink(path.c_str(), target, sizeof target - 1) < 0 ? "" : target;
}

// The absolute path that the caller means. DIRECTORY: its descriptor, or AT_FDCWD.
static std::string path_at(const trap_call& c, uint64_t address, int directory) {
  std::string path = text_at(c, address);
  if (path.empty() || path[0] == '/') return path;
  std::string name = directory == AT_FDCWD ? "cwd" : "fd/" + std::to_string(directory);
  return link_text(caller_proc_path(c.tid, name)) + "/" + path;
}

static void touch(trap_state& trap, const trap_call& c, const std::string& path) {
  if (!file_watch_wants(trap.files, path)) return;
  file_watch_touch(trap.files, path, actor_of(trap, c));
}

static std::vector<std::string> words_at(const trap_call& c, uint64_t list) {
  size_t width = c.arch == AUDIT_ARCH_I386 ? sizeof(uint32_t) : sizeof(uint64_t);
  std::vector<std::string> words;
  for (uint64_t address = 0; words.size() < kWordsMax; list += width) {
    address = 0;
    std::string word;
    if (!caller_read(c.tid, list, &address, width) || address == 0) break;
    static_cast<void>(caller_read_text(c.tid, address, kWordMax, word));
    words.push_back(word);
  }
  return words;
}

static journal_effect process_effect(const char* what, pid_t pid, const std::string& companion) {
  journal_effect told = {};
  told.effect = "process";
  told.members = {{"what", what}, {"companion", companion}, {"process", std::to_string(pid)}};
  return told;
}

static void by(journal_effect& told, const process_actor& actor) {
  told.pid = actor.pid;
  told.comm = actor.comm;
  told.cause = actor.cause;
}

// Whoever searches PATH tries each of its directories: only a program that is there counts.
static void see_execution(trap_state& trap, const trap_call& c, const std::string& path,
                          uint64_t list) {
  pid_t pid = 0;
  std::string comm;
  if (access(path.c_str(), X_OK) < 0) return;
  caller_identify(trap.caller, c.tid, pid, comm);
  process_known& process =
      process_executes(trap.processes, trap.calls, pid, path, words_at(c, list));
  if (process.companion.empty()) return;
  journal_effect told = process_effect("started", pid, process.companion);
  told.cause = process.cause;
  effect_tell(trap, told);
}

static void tell_command(trap_state& trap, pid_t pid, const process_known& process, int status) {
  journal_effect told = {};
  told.effect = "command";
  told.pid = process.parent;
  told.comm = process.parent_comm;
  told.members = {{"line", process.command}, {"process", std::to_string(pid)}};
  if (status < 0) told.members.push_back({"signal", std::to_string(process.signal)});
  told.has_status = status >= 0;
  told.status = status;
  told.cause = process.cause;
  effect_tell(trap, told);
}

// STATUS: that of the process, or below 0 when it was killed.
static void tell_end(trap_state& trap, pid_t pid, const process_known& process, int status) {
  if (process.is_daemon) rpc_calls_forget(trap.calls);
  if (!process.command.empty()) tell_command(trap, pid, process, status);
  if (process.companion.empty()) return;
  journal_effect told = process_effect("ended", pid, process.companion);
  told.has_status = status >= 0;
  told.status = status;
  effect_tell(trap, told);
}

static void see_exit(trap_state& trap, const trap_call& c) {
  pid_t pid = 0;
  std::string comm;
  caller_identify(trap.caller, c.tid, pid, comm);
  if (!process_find(trap.processes, pid)) return;
  process_leaves_children(trap.processes, trap.calls, pid);
  process_known process = process_take(trap.processes, pid);
  tell_end(trap, pid, process, static_cast<int>(c.arguments[0] & 0xFF));
}

void watch_ended(trap_state& trap) {
  for (pid_t pid : processes_ended(trap.processes)) {
    process_known process = process_take(trap.processes, pid);
    tell_end(trap, pid, process, -1);
  }
}

static std::string signal_name(int number) {
  const char* name = sigabbrev_np(number);
  return name ? name : std::to_string(number);
}

// The process that the caller's descriptor stands for; 0: none. It is one of pidfd_open, or the
// open directory /proc/PID, as killall uses it.
static pid_t process_behind(const trap_call& c) {
  static constexpr char kLine[] = "\nPid:", kDirectory[] = "/proc/";
  std::string number = std::to_string(c.arguments[0]);
  std::string info = file_read(caller_proc_path(c.tid, "fdinfo/" + number));
  if (size_t at = info.find(kLine); at != std::string::npos) {
    return atoi(info.c_str() + at + strlen(kLine));
  }
  std::string path = link_text(caller_proc_path(c.tid, "fd/" + number));
  return path.starts_with(kDirectory) ? atoi(path.c_str() + strlen(kDirectory)) : 0;
}

static void see_signal(trap_state& trap, const trap_call& c, pid_t pid) {
  int number = static_cast<int>(c.arguments[1]);
  process_known* process = pid > 0 && number != 0 ? process_find(trap.processes, pid) : nullptr;
  if (!process) return;
  process->signal = number;
  if (process->companion.empty()) return;
  journal_effect told = process_effect("signalled", pid, process->companion);
  told.members.push_back({"signal", signal_name(number)});
  by(told, actor_of(trap, c));
  effect_tell(trap, told);
}

// The worker sleeps for a second before each request.
static void see_sleep(trap_state& trap, const trap_call& c) {
  pid_t pid = 0;
  std::string comm;
  caller_identify(trap.caller, c.tid, pid, comm);
  if (pid == c.tid) return;
  process_known* process = process_find(trap.processes, pid);
  if (!process) static_cast<void>(actor_of(trap, c));
  process = process_find(trap.processes, pid);
  if (process && process->is_daemon) rpc_calls_worker_begins(trap.calls);
}

static void see_connection(trap_state& trap, const trap_call& c) {
  std::string path;
  static_cast<void>(caller_read_text(c.tid, c.arguments[1] + kUnixPathAt, kUnixPathMax, path));
  if (file_watch_listens(trap.files, path)) {
    file_watch_touch(trap.files, path, actor_of(trap, c));
  }
}

void watch_interface_flags(trap_state& trap, const trap_call& c) {
  char name[IFNAMSIZ + 1] = "";
  if (caller_read(c.tid, c.arguments[2], name, IFNAMSIZ)) {
    trap.interface_actors[name] = actor_of(trap, c);
  }
}

void watch_call(trap_state& trap, const trap_call& c) {
  int first = static_cast<int>(c.arguments[0]), third = static_cast<int>(c.arguments[2]);
  switch (c.call) {
    case trapped::kExec:
      return see_execution(trap, c, path_at(c, c.arguments[0], AT_FDCWD), c.arguments[1]);
    case trapped::kExecAt:
      return see_execution(trap, c, path_at(c, c.arguments[1], first), c.arguments[2]);
    case trapped::kExit:
      return see_exit(trap, c);
    case trapped::kKill:
      return see_signal(trap, c, static_cast<pid_t>(c.arguments[0]));
    case trapped::kSignalFd:
      return see_signal(trap, c, process_behind(c));
    case trapped::kRename:
      touch(trap, c, path_at(c, c.arguments[0], AT_FDCWD));
      return touch(trap, c, path_at(c, c.arguments[1], AT_FDCWD));
    case trapped::kRenameAt:
      touch(trap, c, path_at(c, c.arguments[1], first));
      return touch(trap, c, path_at(c, c.arguments[3], third));
    case trapped::kUnlink:
    case trapped::kOpen:
    case trapped::kCreat:
      return touch(trap, c, path_at(c, c.arguments[0], AT_FDCWD));
    case trapped::kUnlinkAt:
    case trapped::kOpenAt:
      return touch(trap, c, path_at(c, c.arguments[1], first));
    case trapped::kConnect:
      return see_connection(trap, c);
    case trapped::kSleep:
    case trapped::kClockSleep:
      return see_sleep(trap, c);
    case trapped::kIoctl:
    case trapped::kSetgroups:
    case trapped::kInitModule:
    case trapped::kFinitModule:
    case trapped::kDeleteModule:
      return;
  }
}
