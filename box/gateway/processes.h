// The processes of a box, as far as they matter: the daemon, what it starts, and the companions. A
// process is known from when it executes something or first makes a trapped call.
#pragma once

#include <sys/types.h>
#include <cstdint>

#include <map>
#include <string>
#include <vector>

#include "base/journal.h"
#include "gateway/rpc_calls.h"

struct process_known {
  int fd;                 // of the process, so that a reused number is noticed
  bool is_daemon;         // one of the daemon's own processes
  bool serves;            // the one that serves calls
  bool of_daemon;         // the daemon's own, or started by it
  std::string companion;  // its name, if it is one
  std::string command;    // the command line, if the daemon executes it
  pid_t parent;           // which of the daemon's processes does
  std::string parent_comm;
  int64_t began_us;     // monotonic, of the command
  int signal;           // the last that it was sent; 0: none
  journal_cause cause;  // of what it does; of the daemon's own processes each thread has another
};

struct process_table {
  std::map<pid_t, process_known> known;
};

// Who does something, and why.
struct process_actor {
  pid_t pid;
  std::string comm;
  bool of_gateway;  // the daemon, what it has started, or a companion
  journal_cause cause;
};

// The thread TID of process PID, whose name is COMM.
process_actor process_actor_of(process_table& all, rpc_calls& calls, int32_t tid, pid_t pid,
                               const std::string& comm);

// The process is about to execute PATH with these arguments. Returns its record.
process_known& process_executes(process_table& all, rpc_calls& calls, pid_t pid,
                                const std::string& path, const std::vector<std::string>& words);

// The process is about to end: whoever it leaves behind keeps its cause.
void process_leaves_children(process_table& all, rpc_calls& calls, pid_t pid);

// Learns of children of the daemon's own processes that have made no trapped call yet.
void process_learn_daemons(process_table& all, rpc_calls& calls);

// The record of a live process, or null.
process_known* process_find(process_table& all, pid_t pid);

// Takes the record out, before its process's number may be used again.
process_known process_take(process_table& all, pid_t pid);

// Those that were killed since: they made no call about it. Takes none out.
std::vector<pid_t> processes_ended(process_table& all);
