#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// The real daemon, for tests inside the simulated gateway. What it prints goes
// to /tmp/daemon.out and /tmp/daemon.err.
//
// It is the daemon of the tests' own build, or that of the build directory that
// the environment variable WIFICONFD_BUILD names: one for another processor.

std::string daemon_path();

// Where that build's stand-in for the host's library is.
std::string host_library_directory();

// Starts wificonfd with further environment ("NAME=value") and returns the
// supervisor's pid without waiting for the service.
pid_t start_supervisor(const std::vector<std::string>& environment = {});

// The same through a shell, with words before the daemon's path.
pid_t start_supervisor_through(const std::string& before);

// Starts it and waits until it answers. Fails the test when it does not.
pid_t start_daemon(const std::vector<std::string>& environment = {});

// Whether the service answers a NULL call now.
[[nodiscard]] bool daemon_answers();

// The service child of a supervisor; 0 when there is none at the moment.
pid_t service_child(pid_t supervisor);

// Sends the signal to a child of this process and waits for its end. Returns
// its exit status, 128 + N when signal N ended it, or -1 when it goes on.
int end_process(pid_t pid, int signal);

// Waits for the end of a child of this process; as above.
int wait_for_end(pid_t pid);

std::string daemon_output();
std::string daemon_errors();
