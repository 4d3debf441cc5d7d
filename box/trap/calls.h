// The system calls that a box traps, by their numbers in 64-bit and in 32-bit programs.
#pragma once

#include <cstdint>
#include <span>

enum class trapped {
  kIoctl,       // requests of the driver and of interfaces
  kSetgroups,   // answered by the filter itself
  kInitModule,  // this and the next two: answered by the box
  kFinitModule,
  kDeleteModule,
  kExec,  // all others: seen by the box, carried out by the kernel
  kExecAt,
  kExit,
  kKill,
  kSignalFd,  // pidfd_send_signal
  kRename,
  kRenameAt,
  kUnlink,
  kUnlinkAt,
  kOpen,  // this and the next two: only where a file may be made or emptied
  kOpenAt,
  kCreat,
  kConnect,  // only to a UNIX socket
  kSleep,    // this and the next: only as the daemon's worker does it
  kClockSleep,
};

constexpr int kCallNone = -1;  // no such call

struct trapped_call {
  trapped call;
  int number_64;
  int number_32;
};

std::span<const trapped_call> trapped_calls();

// The call with that number. ARCH: AUDIT_ARCH_X86_64 or AUDIT_ARCH_I386, NUMBER: one that the
// filter traps.
trapped trapped_find(uint32_t arch, int number);
