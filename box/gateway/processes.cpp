#include "gateway/processes.h"

#include <limits.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include <sstream>

#include "base/files.h"
#include "trap/caller.h"

static constexpr const char* kDaemon = "wificonfd";
static constexpr int kAncestorsMax = 32;

static std::string base_name(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

static std::string companion_of(const std::string& path) {
  std::string name = base_name(path);
#define COMPANION(directory, program, run) \
  if (name == program) return name;
#define NUMBERED_COMPANION(directory, program, run) \
  if (name.starts_with(program)) return name;
#include "base/companions.def"
  return "";
}

static bool has_ended(const process_known& process) {
  pollfd end = {process.fd, POLLIN, 0};
  return process.fd >= 0 && poll(&end, 1, 0) > 0;
}

process_known* process_find(process_table& all, pid_t pid) {
  auto at = all.known.find(pid);
  return at == all.known.end() || has_ended(at->second) ? nullptr : &at->second;
}

process_known process_take(process_table& all, pid_t pid) {
  process_known taken = {};
  auto at = all.known.find(pid);
  if (at == all.known.end()) return taken;
  taken = at->second;
  if (taken.fd >= 0) close(taken.fd);
  all.known.erase(at);
  return taken;
}

// The process's record from now on.
static process_known& renew(process_table& all, pid_t pid, process_known record) {
  static_cast<void>(process_take(all, pid));
  record.fd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
  return all.known[pid] = record;
}

static pid_t parent_of(pid_t pid) {
  std::string status = file_read(caller_proc_path(pid, "status"));
  size_t at = status.find("\nPPid:");
  return at == std::string::npos ? 0 : atoi(status.c_str() + at + strlen("\nPPid:"));
}

static bool runs_daemon(pid_t pid) {
  char path[PATH_MAX] = "";
  if (readlink(caller_proc_path(pid, "exe").c_str(), path, sizeof path - 1) < 0) return false;
  return base_name(path) == kDaemon;
}

// The first thread of the daemon's child serves calls; the other one is the worker. Its parent only
// replaces a child that has ended.
static journal_cause cause_of_thread(const process_known& process, rpc_calls& calls, int32_t tid,
                                     pid_t pid) {
  if (!process.serves) return {};
  return tid == pid ? rpc_calls_current(calls) : calls.worker;
}

static bool holds_word(const std::string& words, const std::string& word) {
  return (" " + words).find(" " + word + " ") != std::string::npos;
}

// The thread of the process that has started the child; the process itself if that is not known.
static int32_t thread_with_child(pid_t pid, pid_t child) {
  for (int32_t tid : caller_threads(pid)) {
    std::string file = "task/" + std::to_string(tid) + "/children";
    if (holds_word(file_read(caller_proc_path(pid, file)), std::to_string(child))) return tid;
  }
  return pid;
}

static process_known& known_of(process_table& all, rpc_calls& calls, pid_t pid, int depth);

// What CHILD does is what its parent had it started for.
static void inherit(process_table& all, rpc_calls& calls, pid_t parent, pid_t child, int depth,
                    process_known& heir) {
  if (parent <= 1 || depth == kAncestorsMax) return;
  const process_known& process = known_of(all, calls, parent, depth + 1);
  heir.of_daemon = process.of_daemon;
  heir.serves = process.is_daemon;  // if it turns out to be the daemon's own
  heir.cause = process.is_daemon
                   ? cause_of_thread(process, calls, thread_with_child(parent, child), parent)
                   : process.cause;
}

static process_known& known_of(process_table& all, rpc_calls& calls, pid_t pid, int depth) {
  if (process_known* process = process_find(all, pid)) return *process;
  process_known heir = {};
  inherit(all, calls, parent_of(pid), pid, depth, heir);
  heir.is_daemon = runs_daemon(pid);
  heir.serves &= heir.is_daemon;
  heir.of_daemon |= heir.is_daemon;
  return renew(all, pid, heir);
}

process_actor process_actor_of(process_table& all, rpc_calls& calls, int32_t tid, pid_t pid,
                               const std::string& comm) {
  const process_known& process = known_of(all, calls, pid, 0);
  bool of_gateway = process.of_daemon || !process.companion.empty();
  journal_cause cause =
      process.is_daemon ? cause_of_thread(process, calls, tid, pid) : process.cause;
  return {pid, comm, of_gateway, cause};
}

// "sh -c LINE" is LINE.
static std::string command_line(const std::vector<std::string>& words) {
  if (words.size() == 3 && base_name(words[0]) == "sh" && words[1] == "-c") return words[2];
  std::string line;
  for (const std::string& word : words)
    line += (line.empty() ? "" : " ") + word;
  return line;
}

// A process that executes for the second time keeps its cause and its command line: a shell does so
// with the last command of a line.
process_known& process_executes(process_table& all, rpc_calls& calls, pid_t pid,
                                const std::string& path, const std::vector<std::string>& words) {
  process_known* before = process_find(all, pid);
  bool again = before && !before->is_daemon;
  process_known next = {};
  pid_t parent = parent_of(pid);
  if (again) {
    next = *before;
  } else {
    inherit(all, calls, parent, pid, 0, next);
  }
  bool by_daemon = !again && parent > 1 && known_of(all, calls, parent, 0).is_daemon;
  next.is_daemon = base_name(path) == kDaemon;
  next.serves = false;
  next.of_daemon |= next.is_daemon;
  next.companion = companion_of(path);
  if (by_daemon && !next.is_daemon) {
    next.command = command_line(words);
    next.parent = parent;
    next.parent_comm = kDaemon;
    next.began_us = journal_now_us();
  }
  return renew(all, pid, next);
}

void process_leaves_children(process_table& all, rpc_calls& calls, pid_t pid) {
  std::istringstream children(
      file_read(caller_proc_path(pid, "task/" + std::to_string(pid) + "/children")));
  for (pid_t child; children >> child;)
    static_cast<void>(known_of(all, calls, child, 0));
}

void process_learn_daemons(process_table& all, rpc_calls& calls) {
  std::vector<pid_t> daemons;
  for (const auto& [pid, process] : all.known) {
    if (process.is_daemon) daemons.push_back(pid);
  }
  for (pid_t pid : daemons)
    process_leaves_children(all, calls, pid);
}

std::vector<pid_t> processes_ended(process_table& all) {
  std::vector<pid_t> ended;
  for (const auto& [pid, process] : all.known) {
    if (has_ended(process)) ended.push_back(pid);
  }
  return ended;
}
