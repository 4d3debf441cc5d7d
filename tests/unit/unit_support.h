#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "support/files.h"
#include "support/gateway.h"

// Shared by the unit tests.

constexpr char kLock24[] = "/tmp/.mt76xx_24.dat.lock";
constexpr char kLock5[] = "/tmp/.mt76xx_5.dat.lock";

// The prefix of a function's console messages.
std::string rpc_prefix(const std::string& function);
std::string rpc_error_prefix(const std::string& function);
std::string rev_prefix(const std::string& function);
std::string rev_error_prefix(const std::string& function);

void switch_log_on();
void switch_console_on();

// The messages in the debug log without their time stamps.
std::string logged();

// What the function writes to standard error or standard output.
template <typename Function>
std::string errors_of(Function function) {
  catch_stream(2);
  function();
  return caught_stream(2);
}

template <typename Function>
std::string output_of(Function function) {
  catch_stream(1);
  function();
  return caught_stream(1);
}

// The number of open descriptors of this process.
int open_descriptors();

// The sorted names in a directory that begin with the prefix, including hidden ones.
std::vector<std::string> names_in(const std::string& directory, const std::string& prefix = "");

// Gives a file, or a link itself, to another user. False when there is none, as in an
// ordinary user's box.
[[nodiscard]] bool give_to_nobody(const std::string& path);
constexpr char kOneUser[] = "this box has one user id only";

// From now on the system call fails in this process and its children. The second form
// fails only calls with that value at that argument position.
void fail_system_call(long number, int error);
void fail_system_call_if(long number, unsigned position, unsigned value, int error);

// Mounts a tmpfs or fails the test.
void mount_tmpfs(const std::string& directory, const std::string& options);

// Whether a task waits for an advisory lock on the file.
bool lock_awaited(const std::string& path);

// Takes an exclusive lock on the file as another process would. Closing the descriptor
// releases it; -1 when somebody holds the lock.
int try_exclusive(const std::string& path);

// The requests that reached the simulated driver, each as JSON.
std::vector<std::string> driver_requests();

bool contains(const std::string& text, const std::string& part);

// Installs a stand-in for the host's library. A gateway has it there or not at all.
constexpr char kHostLibrary[] = "/usr/lib/libvexal_rev_rpc_client.so";
void install_host_library(const char* from = HOST_LIBRARY);

// A child process with that name, which sleeps until it is ended.
pid_t start_process_named(const std::string& name);
void end_process(pid_t child);
