#pragma once

#include <cstdint>
#include <string>

// The system calls that reach outside the daemon, and how each may fail.

enum class failing {
  kRefused,  // not made; returns the error
  kLate,     // made, but returns the error: a close, a wait
  kPart,     // made for half of the bytes
};

struct failure {
  int error;  // 0 ends the list, except with kPart
  failing how;
};

inline constexpr int kFailuresMax = 4;

// A column of the matrix: calls of one kind.
enum class call_class {
  kOpen,
  kRead,
  kWrite,
  kSync,
  kClose,
  kLook,
  kRename,
  kLock,
  kSocket,
  kSend,
  kReceive,
  kDriver,
  kProcess,
  kMemory,
  kCount,
};

const char* class_name(call_class column);

struct outside_call {
  long number;
  const char* name;
  call_class column;
  int flag_argument;        // the row holds only if this argument of the call
  unsigned long flag_mask;  // has these bits set; 0: for all calls
  failure failures[kFailuresMax];
};

// The row of a call; null for one that stays inside the process or cannot fail. A call in
// neither list is remembered for calls_without_row.
const outside_call* find_outside_call(long number, const uint64_t* arguments);

// The numbers of the calls that were made and are in neither list; empty when all is
// well.
std::string calls_without_row();

int failures_of(const outside_call& call);

// `choice` wraps around after the last failure.
const failure& failure_of(const outside_call& call, int choice);

// "openat ENOSPC", "write, half of it"
std::string describe_failure(const outside_call& call, int choice);
