#include "trust/outside_calls.h"

#include <fcntl.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <set>

static constexpr failure refused(int error) {
  return {error, failing::kRefused};
}
static constexpr failure late(int error) {
  return {error, failing::kLate};
}
static constexpr failure kHalf = {0, failing::kPart};

// The first matching row counts.
static constexpr outside_call kCalls[] = {
    {SYS_openat,
     "openat",
     call_class::kOpen,
     2,
     O_CREAT,
     {refused(ENOSPC), refused(EACCES), refused(EMFILE), refused(ENOENT)}},
    {SYS_openat,
     "openat",
     call_class::kOpen,
     0,
     0,
     {refused(ENOENT), refused(EACCES), refused(EMFILE)}},
    {SYS_read, "read", call_class::kRead, 0, 0, {refused(EIO), refused(EINTR), kHalf}},
    {SYS_getdents64, "getdents64", call_class::kRead, 0, 0, {refused(EIO)}},
    {SYS_pread64, "pread64", call_class::kRead, 0, 0, {refused(EIO)}},
    {SYS_write,
     "write",
     call_class::kWrite,
     0,
     0,
     {refused(ENOSPC), refused(EIO), refused(EINTR), kHalf}},
    {SYS_ftruncate, "ftruncate", call_class::kWrite, 0, 0, {refused(EIO), refused(EPERM)}},
    {SYS_fallocate, "fallocate", call_class::kWrite, 0, 0, {refused(ENOSPC), refused(EOPNOTSUPP)}},
    {SYS_fsync, "fsync", call_class::kSync, 0, 0, {refused(EIO), refused(ENOSPC), late(EIO)}},
    {SYS_close, "close", call_class::kClose, 0, 0, {late(EIO), late(EINTR)}},
    {SYS_access, "access", call_class::kLook, 0, 0, {refused(EACCES)}},
    {SYS_stat, "stat", call_class::kLook, 0, 0, {refused(EACCES)}},
    {SYS_fstat, "fstat", call_class::kLook, 0, 0, {refused(ENOMEM)}},
    {SYS_newfstatat, "newfstatat", call_class::kLook, 0, 0, {refused(EACCES), refused(ENOMEM)}},
    {SYS_lseek, "lseek", call_class::kLook, 0, 0, {refused(ESPIPE)}},
    {SYS_chmod, "chmod", call_class::kRename, 0, 0, {refused(EPERM)}},
    {SYS_fchmod, "fchmod", call_class::kRename, 0, 0, {refused(EPERM), refused(EIO)}},
    {SYS_chown, "chown", call_class::kRename, 0, 0, {refused(EPERM)}},
    {SYS_rename,
     "rename",
     call_class::kRename,
     0,
     0,
     {refused(EBUSY), refused(EXDEV), refused(EACCES), refused(ENOSPC)}},
    {SYS_unlink, "unlink", call_class::kRename, 0, 0, {refused(EACCES)}},
    {SYS_rmdir, "rmdir", call_class::kRename, 0, 0, {refused(EACCES)}},
    {SYS_mkdir, "mkdir", call_class::kRename, 0, 0, {refused(EACCES)}},
    {SYS_readlinkat, "readlinkat", call_class::kLook, 0, 0, {refused(EACCES)}},
    {SYS_flock, "flock", call_class::kLock, 0, 0, {refused(ENOLCK), refused(EINTR)}},
    {SYS_fcntl, "fcntl", call_class::kLock, 0, 0, {refused(EAGAIN), refused(ENOLCK)}},
    {SYS_socket, "socket", call_class::kSocket, 0, 0, {refused(EMFILE), refused(ENOBUFS)}},
    {SYS_bind, "bind", call_class::kSocket, 0, 0, {refused(EADDRINUSE), refused(EACCES)}},
    {SYS_connect, "connect", call_class::kSocket, 0, 0, {refused(ECONNREFUSED), refused(EAGAIN)}},
    {SYS_setsockopt, "setsockopt", call_class::kSocket, 0, 0, {refused(ENOMEM)}},
    {SYS_getsockopt, "getsockopt", call_class::kSocket, 0, 0, {refused(ENOBUFS)}},
    {SYS_getsockname, "getsockname", call_class::kSocket, 0, 0, {refused(ENOBUFS)}},
    {SYS_sendto,
     "sendto",
     call_class::kSend,
     0,
     0,
     {refused(ECONNREFUSED), refused(EAGAIN), refused(ENOBUFS)}},
    {SYS_sendmsg, "sendmsg", call_class::kSend, 0, 0, {refused(ENETUNREACH), refused(ENOBUFS)}},
    {SYS_recvfrom,
     "recvfrom",
     call_class::kReceive,
     0,
     0,
     {refused(EAGAIN), refused(ECONNREFUSED), refused(EINTR)}},
    {SYS_recvmsg, "recvmsg", call_class::kReceive, 0, 0, {refused(EAGAIN), refused(EINTR)}},
    {SYS_poll, "poll", call_class::kReceive, 0, 0, {refused(EINTR), refused(ENOMEM)}},
    {SYS_ioctl,
     "ioctl",
     call_class::kDriver,
     0,
     0,
     {refused(ENODEV), refused(EAGAIN), refused(EOPNOTSUPP)}},
    {SYS_init_module,
     "init_module",
     call_class::kDriver,
     0,
     0,
     {refused(ENOMEM), refused(EEXIST), refused(ENOEXEC)}},
    {SYS_listen, "listen", call_class::kSocket, 0, 0, {refused(EADDRINUSE)}},
    {SYS_getpeername, "getpeername", call_class::kSocket, 0, 0, {refused(ENOBUFS)}},
    // Messages with a reason are printed through a duplicate of standard error.
    {SYS_dup, "dup", call_class::kOpen, 0, 0, {refused(EMFILE)}},
    {SYS_pipe2, "pipe2", call_class::kProcess, 0, 0, {refused(EMFILE)}},
    {SYS_clone, "clone", call_class::kProcess, 0, 0, {refused(EAGAIN), refused(ENOMEM)}},
    {SYS_clone3, "clone3", call_class::kProcess, 0, 0, {refused(EAGAIN), refused(ENOMEM)}},
    {SYS_wait4, "wait4", call_class::kProcess, 0, 0, {refused(EINTR), late(ECHILD)}},
    {SYS_waitid, "waitid", call_class::kProcess, 0, 0, {refused(EINTR), refused(ECHILD)}},
    {SYS_mmap, "mmap", call_class::kMemory, 0, 0, {refused(ENOMEM)}},
    {SYS_mprotect, "mprotect", call_class::kMemory, 0, 0, {refused(ENOMEM)}},
};

// Calls that stay inside the process, cannot fail, or whose failure the C library hides.
// A heap that cannot grow (brk) is covered by failing allocations.
static constexpr long kInside[] = {
    SYS_brk,
    SYS_munmap,
    SYS_madvise,
    SYS_futex,
    SYS_rseq,
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_getpid,
    SYS_getppid,
    SYS_gettid,
    SYS_geteuid,
    SYS_getegid,
    SYS_getuid,
    SYS_getgid,
    SYS_set_robust_list,
    SYS_exit,
    SYS_exit_group,
    SYS_kill,
    SYS_prlimit64,
    SYS_getrandom,
    SYS_umask,
    SYS_uname,
    SYS_gettimeofday,
    SYS_clock_gettime,
    SYS_nanosleep,
    SYS_clock_nanosleep,
    SYS_sched_yield,
    SYS_restart_syscall,
    SYS_tgkill,
    SYS_sigaltstack,
    SYS_getrlimit,
    SYS_getitimer,
    SYS_time,
    SYS_sysinfo,
    SYS_set_tid_address,
};

static std::set<long> unlisted;

const outside_call* find_outside_call(long number, const uint64_t* arguments) {
  for (const outside_call& row : kCalls) {
    const bool flagged = (arguments[row.flag_argument] & row.flag_mask) == row.flag_mask;
    if (row.number == number && flagged) return &row;
  }
  if (std::find(std::begin(kInside), std::end(kInside), number) == std::end(kInside))
    unlisted.insert(number);
  return nullptr;
}

std::string calls_without_row() {
  std::string numbers;
  for (const long number : unlisted)
    numbers += (numbers.empty() ? "" : " ") + std::to_string(number);
  return numbers;
}

int failures_of(const outside_call& call) {
  int count = 0;
  while (count < kFailuresMax &&
         (call.failures[count].error != 0 || call.failures[count].how == failing::kPart))
    ++count;
  return count;
}

const failure& failure_of(const outside_call& call, int choice) {
  const int count = failures_of(call);
  return call.failures[count > 0 ? choice % count : 0];
}

std::string describe_failure(const outside_call& call, int choice) {
  const failure& wanted = failure_of(call, choice);
  if (wanted.how == failing::kPart) return std::string(call.name) + ", half of it";
  const char* error = strerrorname_np(wanted.error);
  return std::string(call.name) + (wanted.how == failing::kLate ? ", made, then " : " ") + error;
}

const char* class_name(call_class column) {
  static constexpr const char* kNames[] = {"open",    "read",   "write",   "sync",   "close",
                                           "look",    "rename", "lock",    "socket", "send",
                                           "receive", "driver", "process", "memory"};
  static_assert(std::size(kNames) == static_cast<size_t>(call_class::kCount));
  return kNames[static_cast<int>(column)];
}
