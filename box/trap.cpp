#include "trap.h"

#include <assert.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/seccomp.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <string>

#include "files.h"
#include "net.h"

// The wireless request frame as the caller lays it out: the interface name, then pointer, length
// and flags, with pointers of the caller's own width.
static constexpr size_t NAME_SIZE = 16;
static constexpr size_t FRAME_SIZE = 32;
static constexpr size_t POINTER_AT = 16;

// The VLAN request carries a command word before the interface name.
static constexpr uint32_t VLAN_REQUEST = 0x8983;
static constexpr size_t VLAN_NAME_AT = 4;

struct call {
  uint64_t id;
  int32_t tid;
  uint32_t arch;
  int fd;
  uint32_t request;
  uint64_t frame;    // address in the caller
  uint64_t pointer;  // of the caller's buffer
  size_t length_at;  // offset of the length in the frame
  driver_request asked;
};

static bool read_caller(const call& c, uint64_t address, void* to, size_t size) {
  iovec here = {to, size}, there = {reinterpret_cast<void*>(address), size};
  return process_vm_readv(c.tid, &here, 1, &there, 1, 0) == static_cast<ssize_t>(size);
}

static bool write_caller(const call& c, uint64_t address, const void* from, size_t size) {
  iovec here = {const_cast<void*>(from), size}, there = {reinterpret_cast<void*>(address), size};
  return process_vm_writev(c.tid, &here, 1, &there, 1, 0) == static_cast<ssize_t>(size);
}

// False once the caller is gone: its thread id may by now be somebody else's.
static bool still_waiting(const trap_state& trap, uint64_t id) {
  return ioctl(trap.listener, SECCOMP_IOCTL_NOTIF_ID_VALID, &id) == 0;
}

static std::string proc_path(int32_t tid, const char* name) {
  return "/proc/" + std::to_string(tid) + "/" + name;
}

// The call must be made on a socket, as for every other interface request.
static int check_descriptor(const call& c) {
  char target[32] = "";
  std::string link = proc_path(c.tid, "fd/") + std::to_string(c.fd);
  if (readlink(link.c_str(), target, sizeof target - 1) < 0) return -EBADF;
  return strncmp(target, "socket:", 7) == 0 ? 0 : -ENOTTY;
}

// Most callers are the first thread of their process, whose id is the process's.
static pid_t process_of(int32_t tid) {
  int fd = static_cast<int>(syscall(SYS_pidfd_open, tid, 0));
  if (fd >= 0) {
    close(fd);
    return tid;
  }
  std::string status = file_read(proc_path(tid, "status"));
  size_t at = status.find("\nTgid:");
  return at == std::string::npos ? tid : atoi(status.c_str() + at + strlen("\nTgid:"));
}

static void learn_caller(trap_caller& caller, int32_t tid) {
  if (caller.comm_fd > 0) close(caller.comm_fd);
  caller.tid = tid;
  caller.pid = process_of(tid);
  caller.comm_fd = open(proc_path(tid, "comm").c_str(), O_RDONLY | O_CLOEXEC);
}

// Callers come in runs, so the last one stays known. Its open file tells when it is gone, even
// if its thread id belongs to another by now, and a new name after it executes something else.
static void identify(trap_caller& caller, int32_t tid, journal_entry& entry) {
  char name[32];
  ssize_t size = caller.tid == tid ? pread(caller.comm_fd, name, sizeof name, 0) : -1;
  if (size <= 0) {
    learn_caller(caller, tid);
    size = pread(caller.comm_fd, name, sizeof name, 0);
  }
  entry.pid = caller.pid;
  if (size > 0) entry.comm.assign(name, static_cast<size_t>(size - 1));  // less its newline
}

static uint16_t word_at(const char* frame, size_t at) {
  uint16_t word;
  memcpy(&word, frame + at, sizeof word);
  return word;
}

// Takes the frame apart; false when it cannot be read.
static bool read_frame(call& c, std::string& interface) {
  char frame[FRAME_SIZE] = {};
  bool vlan = c.request == VLAN_REQUEST;
  if (!read_caller(c, c.frame, frame, vlan ? VLAN_NAME_AT + NAME_SIZE : FRAME_SIZE)) return false;
  const char* name = frame + (vlan ? VLAN_NAME_AT : 0);
  interface.assign(name, strnlen(name, NAME_SIZE - 1));
  if (vlan) return true;
  size_t width = c.arch == AUDIT_ARCH_I386 ? sizeof(uint32_t) : sizeof(uint64_t);
  memcpy(&c.pointer, frame + POINTER_AT, width);
  c.length_at = POINTER_AT + width;
  c.asked.length = word_at(frame, c.length_at);
  c.asked.flags = word_at(frame, c.length_at + sizeof(uint16_t));
  return true;
}

static bool read_input(call& c) {
  size_t size = driver_input_size(c.request, c.asked.flags, c.asked.length);
  c.asked.input.resize(size);
  return size == 0 || read_caller(c, c.pointer, c.asked.input.data(), size);
}

// The driver's answer goes out only while the caller still waits for it, and never beyond what
// the caller announced: an entry of the private list is 24 bytes, everything else counts bytes.
static int write_answer(const trap_state& trap, const call& c) {
  const driver_request& r = c.asked;
  size_t room = r.request == DRIVER_GET_PRIV ? r.length * size_t{24} : r.length;
  if (r.output.size() > room) abort();
  if (!still_waiting(trap, c.id)) return -EINTR;
  if (!r.output.empty() && !write_caller(c, c.pointer, r.output.data(), r.output.size())) {
    return -EFAULT;
  }
  if (r.has_answer_length &&
      !write_caller(c, c.frame + c.length_at, &r.answer_length, sizeof r.answer_length)) {
    return -EFAULT;
  }
  return 0;
}

static void describe(journal_entry& entry, const call& c) {
  entry.request = c.request;
  entry.name = c.request == VLAN_REQUEST ? "vlan" : driver_request_name(c.request, c.asked.flags);
  entry.has_sub = driver_has_sub(c.request);
  entry.sub = c.asked.flags & static_cast<uint16_t>(~DRIVER_SET_FLAG);
  entry.length = c.asked.length;
}

// Everything up to the driver: what is wrong with the request itself.
static int read_request(trap_state& trap, call& c, journal_entry& entry) {
  int status = check_descriptor(c);
  if (status == 0 && !read_frame(c, entry.interface)) status = -EFAULT;
  identify(trap.caller, c.tid, entry);
  describe(entry, c);
  if (status != 0) return status;
  if (c.request == VLAN_REQUEST) return -EOPNOTSUPP;  // the box has no VLANs
  c.asked.bss = driver_interface_number(entry.interface.c_str());
  bool exists = c.asked.bss >= 0 && net_interface_exists(trap.socket, entry.interface.c_str());
  if (!exists) return -ENODEV;
  if (!read_input(c)) return -EFAULT;
  entry.has_text = c.request == DRIVER_SET_TEXT;
  if (entry.has_text) entry.text = c.asked.input.c_str();
  return 0;
}

static int do_request(trap_state& trap, call& c) {
  int status = driver_handle(trap.driver, c.asked);
  int written = write_answer(trap, c);
  return status != 0 ? status : written;
}

static void respond(const trap_state& trap, uint64_t id, int status) {
  seccomp_notif_resp response = {};
  response.id = id;
  response.error = status;
  // It fails only when the caller is gone, and then nobody waits for the answer.
  (void)ioctl(trap.listener, SECCOMP_IOCTL_NOTIF_SEND, &response);
}

static void delay(trap_state& trap, const call& c, const fault_rule& rule) {
  trap_delayed held = {};
  held.id = c.id;
  held.due_us = journal_now_us() + rule.delay_ms * 1000LL;
  held.tid = c.tid;
  held.arch = c.arch;
  held.arguments[0] = static_cast<uint64_t>(c.fd);
  held.arguments[1] = c.request;
  held.arguments[2] = c.frame;
  held.rule = rule;
  trap.delayed.push_back(held);
}

// RULE: the one whose delay is over, or null when the call has only just come in.
static void serve(trap_state& trap, call& c, const fault_rule* rule) {
  journal_entry entry = {};
  int status = read_request(trap, c, entry);
  if (!still_waiting(trap, c.id)) return;  // what was read may be another process's
  fault_rule taken = {};
  if (rule) {
    taken = *rule;
  } else if (fault_take(trap.faults, c.request, entry.has_sub, entry.sub, entry.interface, taken)) {
    if (taken.delay_ms > 0) return delay(trap, c, taken);
  }
  entry.injected = rule || taken.left > 0;
  entry.delay_ms = taken.delay_ms;
  if (taken.error != 0) status = -taken.error;
  if (status == 0) status = do_request(trap, c);
  entry.result = status;
  journal_append(trap.log, entry);
  respond(trap, c.id, status);
}

static call call_of(uint64_t id, int32_t tid, uint32_t arch, const uint64_t* arguments) {
  call c = {};
  c.id = id;
  c.tid = tid;
  c.arch = arch;
  c.fd = static_cast<int>(arguments[0]);
  c.request = static_cast<uint32_t>(arguments[1]);
  c.frame = arch == AUDIT_ARCH_I386 ? static_cast<uint32_t>(arguments[2]) : arguments[2];
  c.asked.request = c.request;
  return c;
}

// Kernels may append to the record; this size is what this program was built for, and what the
// kernel fills is never more than a seccomp_notif of its own, hence the spare room.
void trap_take(trap_state& trap) {
  union {
    seccomp_notif notification;
    char room[512];
  } received;
  memset(&received, 0, sizeof received);
  if (ioctl(trap.listener, SECCOMP_IOCTL_NOTIF_RECV, &received) < 0) return;
  const seccomp_notif& n = received.notification;
  call c = call_of(n.id, static_cast<int32_t>(n.pid), n.data.arch,
                   reinterpret_cast<const uint64_t*>(n.data.args));
  serve(trap, c, nullptr);
}

int trap_run_delayed(trap_state& trap) {
  int64_t now = journal_now_us(), next = -1;
  std::vector<trap_delayed> due;
  std::erase_if(trap.delayed, [&](const trap_delayed& held) {
    if (held.due_us <= now)
      due.push_back(held);
    else if (next < 0 || held.due_us < next)
      next = held.due_us;
    return held.due_us <= now;
  });
  for (const trap_delayed& held : due) {
    call c = call_of(held.id, held.tid, held.arch, held.arguments);
    serve(trap, c, &held.rule);
  }
  return next < 0 ? -1 : static_cast<int>((next - now + 999) / 1000);
}
