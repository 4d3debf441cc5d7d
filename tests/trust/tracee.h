#pragma once

#include <sys/types.h>

#include <set>
#include <string>
#include <vector>

#include "trust/outside_calls.h"

// The daemon under ptrace: the supervisor, each service child and its threads, not the
// commands that they run. Every system call of theirs stops twice, so that a chosen one
// can be failed, or the process killed, at exactly that place. Their sleeps take no
// time. There is one daemon; all calls come from the thread that started it.

enum class role { kSupervisor, kServer, kWorker, kCount };

// The failure to come: the `nth` outside call, counted from 1, that a thread of the
// role makes from now on fails in the way `choice` of its row, which begin anew after the
// last. 0: none.
struct injection {
  role where;
  int nth;
  int choice;
};

// Where to kill the service child: at the `nth` system call, of any kind, that its main
// thread makes from now on, before it is made or after. 0: nowhere.
struct kill_point {
  int nth;
  bool after;
};

// Starts the daemon with further environment, both its streams in files.
void start_traced(const std::string& path, const std::vector<std::string>& environment);

// Kills what is left of it.
void stop_traced();

// From here on counts outside calls anew, with one to fail or none.
void arm(const injection& wanted);

// The call that was failed since; null when none was.
const outside_call* injected();

// The outside calls that threads of the role made since, in order.
const std::vector<const outside_call*>& calls_made(role who);

// From here on counts system calls of the service child, with one to die at or none.
void arm_kill(const kill_point& wanted);

// The call that it died at; empty when it did not die of arm_kill.
const std::string& killed_at();

enum class stand {
  kQuiet,  // waits for requests, and every worker for work
  kHung,   // does not get there in time
  kEnded,  // the supervisor is gone
};

// Lets the daemon go until it is quiet. Its main thread is stopped then, about to wait
// for requests: wake() lets it go on, into the wait or, with an error, out of it.
stand run_until_quiet(double seconds);
void wake(int error = 0);

pid_t service_pid();      // 0 while there is none
int service_children();   // how many there have been
int supervisor_status();  // what waitpid said of its end

// Descriptors that are kept on purpose: the controller's, known by their time limit.
const std::set<int>& kept_descriptors();
