#include "trap/filter.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <vector>

#include "base/report.h"
#include "trap/calls.h"

#ifndef __x86_64__
#error \
    "gwbox traps calls by their numbers on x86-64: on this architecture they would reach the host"
#endif

#ifndef SECCOMP_FILTER_FLAG_WAIT_KILLABLE_RECV
#define SECCOMP_FILTER_FLAG_WAIT_KILLABLE_RECV (1UL << 5)
#endif
#ifndef SECCOMP_IOCTL_NOTIF_SET_FLAGS
#define SECCOMP_IOCTL_NOTIF_SET_FLAGS SECCOMP_IOW(4, __u64)
#define SECCOMP_USER_NOTIF_FD_SYNC_WAKE_UP (1UL << 0)
#endif

static constexpr uint32_t kWirelessFirst = 0x8B00;
static constexpr uint32_t kWirelessLast = 0x8BFF;
static constexpr uint32_t kVlanRequest = 0x8983;
static constexpr uint32_t kInterfaceFlags = SIOCSIFFLAGS;

// Set in the system call numbers of x32 programs, which report the 64-bit architecture: their calls
// are refused, too.
static constexpr uint32_t kX32Bit = 0x40000000;
static constexpr uint32_t kNoCall = 0xFFFFFFFF;  // set by a tracer to skip a call

using program = std::vector<sock_filter>;

static void load(program& p, size_t offset) {
  p.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset)));
}

static void end(program& p, uint32_t verdict) {
  p.push_back(BPF_STMT(BPF_RET | BPF_K, verdict));
}

// Jump distances are in instructions after the jump itself.
static void jump(program& p, uint16_t test, uint32_t value, uint8_t if_true, uint8_t if_false) {
  p.push_back(BPF_JUMP(static_cast<uint16_t>(BPF_JMP | test | BPF_K), value, if_true, if_false));
}

// The low half of an argument, which comes first in memory.
static void load_argument(program& p, size_t index) {
  load(p, offsetof(seccomp_data, args) + index * sizeof(uint64_t));
}

static program ioctl_part() {
  program p;
  load_argument(p, 1);
  jump(p, BPF_JEQ, kVlanRequest, 3, 0);
  jump(p, BPF_JEQ, kInterfaceFlags, 2, 0);
  jump(p, BPF_JGE, kWirelessFirst, 0, 2);
  jump(p, BPF_JGT, kWirelessLast, 1, 0);
  end(p, SECCOMP_RET_USER_NOTIF);
  end(p, SECCOMP_RET_ALLOW);
  return p;
}

// Traps the call if TEST of the argument and VALUE holds.
static program argument_part(size_t index, uint16_t test, uint32_t value) {
  program p;
  load_argument(p, index);
  jump(p, test, value, 0, 1);
  end(p, SECCOMP_RET_USER_NOTIF);
  end(p, SECCOMP_RET_ALLOW);
  return p;
}

// Traps an open that empties the file, or may make it in order to write it. Who may make it in
// order to read and write it has a lock or a file of its own there, which is no news.
static program open_part(size_t flags) {
  program p;
  load_argument(p, flags);
  jump(p, BPF_JSET, O_TRUNC, 3, 0);
  jump(p, BPF_JSET, O_CREAT, 0, 3);
  p.push_back(BPF_STMT(BPF_ALU | BPF_AND | BPF_K, O_ACCMODE));
  jump(p, BPF_JEQ, O_WRONLY, 0, 1);
  end(p, SECCOMP_RET_USER_NOTIF);
  end(p, SECCOMP_RET_ALLOW);
  return p;
}

// Traps the call if both arguments are the same. A sleep is of interest only as the daemon's worker
// does it: the time that is left replaces the time.
static program same_arguments_part(size_t one, size_t other) {
  program p;
  load_argument(p, one);
  p.push_back(BPF_STMT(BPF_MISC | BPF_TAX, 0));
  load_argument(p, other);
  p.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_X, 0, 0, 1));
  end(p, SECCOMP_RET_USER_NOTIF);
  end(p, SECCOMP_RET_ALLOW);
  return p;
}

static program always_part() {
  program p;
  end(p, SECCOMP_RET_USER_NOTIF);
  return p;
}

static program setgroups_part(const filter_options& options) {
  program p;
  if (options.answer_setgroups) end(p, SECCOMP_RET_ERRNO | 0);
  return p;
}

static program call_part(trapped call, const filter_options& options) {
  switch (call) {
    case trapped::kIoctl:
      return ioctl_part();
    case trapped::kSetgroups:
      return setgroups_part(options);
    case trapped::kOpen:
      return open_part(1);
    case trapped::kOpenAt:
      return open_part(2);
    case trapped::kConnect:
      return argument_part(2, BPF_JEQ, sizeof(sockaddr_un));
    case trapped::kInitModule:
    case trapped::kFinitModule:
    case trapped::kDeleteModule:
    case trapped::kExec:
    case trapped::kExecAt:
    case trapped::kExit:
    case trapped::kKill:
    case trapped::kSignalFd:
    case trapped::kRename:
    case trapped::kRenameAt:
    case trapped::kUnlink:
    case trapped::kUnlinkAt:
    case trapped::kCreat:
      return always_part();
    case trapped::kSleep:
      return same_arguments_part(0, 1);
    case trapped::kClockSleep:
      return same_arguments_part(2, 3);
  }
  return {};
}

// The trapped calls of one architecture; every part ends in a verdict. Calls of an architecture
// that is not listed would pass untrapped, so they are refused.
static program arch_part(uint32_t arch, const filter_options& options) {
  program p;
  load(p, offsetof(seccomp_data, nr));
  if (arch == AUDIT_ARCH_X86_64) {
    jump(p, BPF_JGE, kX32Bit, 0, 2);
    jump(p, BPF_JEQ, kNoCall, 1, 0);
    end(p, SECCOMP_RET_ERRNO | ENOSYS);
  }
  for (const trapped_call& row : trapped_calls()) {
    int number = arch == AUDIT_ARCH_I386 ? row.number_32 : row.number_64;
    program part = number == kCallNone ? program() : call_part(row.call, options);
    if (part.empty()) continue;
    jump(p, BPF_JEQ, static_cast<uint32_t>(number), 0, static_cast<uint8_t>(part.size()));
    p.insert(p.end(), part.begin(), part.end());
  }
  end(p, SECCOMP_RET_ALLOW);
  return p;
}

static program whole_program(const filter_options& options) {
  program p;
  load(p, offsetof(seccomp_data, arch));
  for (uint32_t arch : {uint32_t{AUDIT_ARCH_X86_64}, uint32_t{AUDIT_ARCH_I386}}) {
    program part = arch_part(arch, options);
    jump(p, BPF_JEQ, arch, 0, static_cast<uint8_t>(part.size()));
    p.insert(p.end(), part.begin(), part.end());
  }
  end(p, SECCOMP_RET_ERRNO | ENOSYS);
  return p;
}

static int install(const sock_fprog& code, unsigned flags) {
  return static_cast<int>(syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER,
                                  SECCOMP_FILTER_FLAG_NEW_LISTENER | flags, &code));
}

static const char* install_hint() {
  switch (errno) {
    case EBUSY:
      return "the calls of this process are trapped already: a box cannot run inside a box";
    case EINVAL:
    case ENOSYS:
      return "Linux 5.5 or later with CONFIG_SECCOMP_FILTER is needed";
    default:
      return nullptr;
  }
}

int filter_install(const filter_options& options) {
  program p = whole_program(options);
  sock_fprog code = {static_cast<unsigned short>(p.size()), p.data()};
  // With this flag only a fatal signal interrupts a call that has been received. Kernels before
  // 5.19 lack it and restart the call, so that a set is done twice.
  int listener = install(code, SECCOMP_FILTER_FLAG_WAIT_KILLABLE_RECV);
  if (listener < 0 && errno == EINVAL) listener = install(code, 0);
  if (listener < 0) {
    report_errno(install_hint(), "trap the driver's requests");
    return -1;
  }
  // Caller and supervisor take turns, so waking another processor only costs time. Kernels
  // before 6.6 lack the flag, which does no harm.
  static_cast<void>(
      ioctl(listener, SECCOMP_IOCTL_NOTIF_SET_FLAGS, SECCOMP_USER_NOTIF_FD_SYNC_WAKE_UP));
  return listener;
}
