#pragma once

#include <sys/types.h>

#include <set>
#include <string>
#include <vector>

#include "trust/outside_calls.h"

// The daemon under ptrace: the supervisor and each service child with its threads, but
// not the commands that they run. Each system call stops on entry and on exit, so that a
// chosen one can fail, or the process be killed, at exactly that place. The child's sleeps
// take no time. There is one daemon, and one thread must make all calls of this header.

enum class role { kSupervisor, kServer, kWorker, kCount };

// The failure to come: of the outside calls that threads of the role make from now on,
// the `nth`, counted from 1, fails. `choice` selects the failure of its row. 0: no
// failure.
struct injection {
  role where;
  int nth;
  int choice;
};

// Where to kill the service child: before or after the `nth` system call, of any kind,
// that its main thread makes from now on. 0: nowhere.
struct kill_point {
  int nth;
  bool after;
};

// Starts the daemon with additional environment and both its streams in files.
void start_traced(const std::string& path, const std::vector<std::string>& environment);

// Kills the supervisor and the service child.
void stop_traced();

// Counts outside calls from zero again and fails one of them, or none.
void arm(const injection& wanted);

// The call that has failed since arm(); null when none has.
const outside_call* injected();

// The outside calls that threads of the role have made since arm(), in order.
const std::vector<const outside_call*>& calls_made(role who);

// Counts the service child's system calls from zero again and kills it at one of them, or
// at none.
void arm_kill(const kill_point& wanted);

// The call at which arm_kill() killed the child; empty when it did not.
const std::string& killed_at();

enum class stand {
  kQuiet,  // waits for requests, and every worker for work
  kHung,   // was not quiet in time
  kEnded,  // the supervisor is gone
};

// Lets the daemon run until it is quiet. Its main thread is then stopped just before it
// waits for requests; wake() lets it enter the wait or, with an error, makes the wait
// fail.
stand run_until_quiet(double seconds);
void wake(int error = 0);

pid_t service_pid();      // 0 while there is none
int service_children();   // how many there have been
int supervisor_status();  // what waitpid returned

// Descriptors that the daemon keeps on purpose: those of exchanges with the controller,
// recognised by their receive timeout.
const std::set<int>& kept_descriptors();
