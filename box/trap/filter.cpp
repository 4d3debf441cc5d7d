#include "trap/filter.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <vector>

#include "base/report.h"

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

// Set in the system call numbers of x32 programs, which report the 64-bit architecture: their calls
// are refused, too.
static constexpr uint32_t kX32Bit = 0x40000000;
static constexpr uint32_t kNoCall = 0xFFFFFFFF;  // set by a tracer to skip a call

enum filter_action {
  kFilterIoctl,      // trapped if its request is one of the above
  kFilterSetgroups,  // answered with 0 if the options say so
  kFilterModule,     // loading and unloading a driver: always trapped
};

// The calls of a 32-bit program have other numbers. Calls of an architecture that is not listed
// would pass untrapped, so they are refused.
struct filter_row {
  uint32_t arch;
  uint32_t number;
  filter_action action;
};

static constexpr filter_row kRows[] = {
    {AUDIT_ARCH_X86_64, 16, kFilterIoctl},    {AUDIT_ARCH_X86_64, 116, kFilterSetgroups},
    {AUDIT_ARCH_X86_64, 175, kFilterModule},  // init_module
    {AUDIT_ARCH_X86_64, 176, kFilterModule},  // delete_module
    {AUDIT_ARCH_X86_64, 313, kFilterModule},  // finit_module
    {AUDIT_ARCH_I386, 54, kFilterIoctl},      {AUDIT_ARCH_I386, 81, kFilterSetgroups},
    {AUDIT_ARCH_I386, 206, kFilterSetgroups},  // setgroups32
    {AUDIT_ARCH_I386, 128, kFilterModule},    {AUDIT_ARCH_I386, 129, kFilterModule},
    {AUDIT_ARCH_I386, 350, kFilterModule},
};

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

// The request is the low half of the second argument, which comes first in memory.
static program ioctl_part() {
  program p;
  load(p, offsetof(seccomp_data, args[1]));
  jump(p, BPF_JEQ, kVlanRequest, 2, 0);
  jump(p, BPF_JGE, kWirelessFirst, 0, 2);
  jump(p, BPF_JGT, kWirelessLast, 1, 0);
  end(p, SECCOMP_RET_USER_NOTIF);
  end(p, SECCOMP_RET_ALLOW);
  return p;
}

static program action_part(filter_action action, const filter_options& options) {
  program p;
  switch (action) {
    case kFilterIoctl:
      return ioctl_part();
    case kFilterSetgroups:
      if (options.answer_setgroups) end(p, SECCOMP_RET_ERRNO | 0);
      return p;
    case kFilterModule:
      end(p, SECCOMP_RET_USER_NOTIF);
      return p;
  }
  return p;
}

// All rows of one architecture; every part ends in a verdict.
static program arch_part(uint32_t arch, const filter_options& options) {
  program p;
  load(p, offsetof(seccomp_data, nr));
  if (arch == AUDIT_ARCH_X86_64) {
    jump(p, BPF_JGE, kX32Bit, 0, 2);
    jump(p, BPF_JEQ, kNoCall, 1, 0);
    end(p, SECCOMP_RET_ERRNO | ENOSYS);
  }
  for (const filter_row& row : kRows) {
    if (row.arch != arch) continue;
    program part = action_part(row.action, options);
    if (part.empty()) continue;
    jump(p, BPF_JEQ, row.number, 0, static_cast<uint8_t>(part.size()));
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
      return "Linux 5.0 or later with CONFIG_SECCOMP_FILTER is needed";
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
