#include "trap/calls.h"

#include <linux/audit.h>
#include <cstdlib>

static constexpr trapped_call kCalls[] = {
    {trapped::kIoctl, 16, 54},
    {trapped::kSetgroups, 116, 81},
    {trapped::kSetgroups, kCallNone, 206},  // setgroups32
    {trapped::kInitModule, 175, 128},
    {trapped::kFinitModule, 313, 350},
    {trapped::kDeleteModule, 176, 129},
    {trapped::kExec, 59, 11},
    {trapped::kExecAt, 322, 358},
    {trapped::kExit, 231, 252},  // exit_group
    {trapped::kKill, 62, 37},
    {trapped::kSignalFd, 424, 424},
    {trapped::kRename, 82, 38},
    {trapped::kRenameAt, 264, 302},
    {trapped::kRenameAt, 316, 353},  // renameat2
    {trapped::kUnlink, 87, 10},
    {trapped::kUnlinkAt, 263, 301},
    {trapped::kOpen, 2, 5},
    {trapped::kOpenAt, 257, 295},
    {trapped::kCreat, 85, 8},
    {trapped::kConnect, 42, 362},
    {trapped::kSleep, 35, 162},
    {trapped::kClockSleep, 230, 267},        // clock_nanosleep
    {trapped::kClockSleep, kCallNone, 407},  // clock_nanosleep_time64
};

std::span<const trapped_call> trapped_calls() {
  return kCalls;
}

trapped trapped_find(uint32_t arch, int number) {
  for (const trapped_call& row : kCalls) {
    if (number == (arch == AUDIT_ARCH_I386 ? row.number_32 : row.number_64)) return row.call;
  }
  abort();  // the filter lets no other through to here
}
