#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// The real daemon, for tests inside the simulated gateway. Its output goes to /tmp/daemon.out
// and /tmp/daemon.err.
//
// It comes from the tests' own build, or from the build directory in the environment variable
// WIFICONFD_BUILD, which may be for another processor.

std::string daemon_path();

// The directory of that build's stand-in for the host's library.
std::string host_library_directory();

// Starts wificonfd with additional environment variables ("NAME=value"). Returns the
// supervisor's pid without waiting for the service.
pid_t start_supervisor(const std::vector<std::string>& environment = {});

// The same through a shell, with words in front of the daemon's path.
pid_t start_supervisor_through(const std::string& before);

// Starts the daemon and waits until it answers. Fails the test if it does not.
pid_t start_daemon(const std::vector<std::string>& environment = {});

// Whether the service answers a NULL call now.
[[nodiscard]] bool daemon_answers();

// The supervisor's service child; 0 if there is none now.
pid_t service_child(pid_t supervisor);

// Sends the signal to a child process and waits for its end. Returns its exit status, 128 + N
// if signal N ended it, or -1 if it keeps running.
int end_process(pid_t pid, int signal);

// Waits for a child process to end; returns as above.
int wait_for_end(pid_t pid);

std::string daemon_output();
std::string daemon_errors();
