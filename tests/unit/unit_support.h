#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "support/files.h"

// What the unit tests share beyond files.

constexpr char kProfile24[] = "/tmp/mt76xx_24.dat";
constexpr char kProfile5[] = "/tmp/mt76xx_5.dat";
constexpr char kLock24[] = "/tmp/.mt76xx_24.dat.lock";
constexpr char kLock5[] = "/tmp/.mt76xx_5.dat.lock";
constexpr char kMirror24[] = "/tmp/mt76xx_24.dat.hnc";
constexpr char kMirror5[] = "/tmp/mt76xx_5.dat.hnc";

// Prefixes of the console messages of a function.
std::string rpc_prefix(const std::string& function);
std::string rpc_error_prefix(const std::string& function);
std::string rev_prefix(const std::string& function);
std::string rev_error_prefix(const std::string& function);

// The switches of the debug log and of the console.
void switch_log_on();
void switch_console_on();

// The messages of the debug log, each without its time stamp.
std::string logged();

// What the function writes on standard error, or on standard output.
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

// Open descriptors of this process.
int open_descriptors();

// Names in a directory that begin with the prefix, sorted; also hidden ones.
std::vector<std::string> names_in(const std::string& directory, const std::string& prefix = "");

// Gives a file, or a link itself, to another user; false where there is no other one,
// as in the box of an ordinary user.
[[nodiscard]] bool give_to_nobody(const std::string& path);
constexpr char kOneUser[] = "this box has one user id only";

// From here on the system call fails in this process and its children. With an
// argument position only calls that have the given value there.
void fail_system_call(long number, int error);
void fail_system_call_if(long number, unsigned position, unsigned value, int error);

// Mounts a tmpfs, fails the test when it cannot.
void mount_tmpfs(const std::string& directory, const std::string& options);

// Whether a task waits for an advisory lock on the file.
bool lock_awaited(const std::string& path);

// Exclusive lock on the file as another process would take it; closes with the
// descriptor, -1 when somebody holds it.
int try_exclusive(const std::string& path);

// The requests that reached the simulated driver: one JSON text each.
std::vector<std::string> driver_requests();

// Whether the text contains the part.
bool contains(const std::string& text, const std::string& part);

// How often the text contains the part.
int count_of(const std::string& text, const std::string& part);

// A child of this process that sleeps under the name until it is ended.
pid_t start_process_named(const std::string& name);
void end_process(pid_t child);
