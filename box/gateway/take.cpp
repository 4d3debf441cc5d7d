#include "gateway/state.h"

#include <linux/audit.h>
#include <linux/seccomp.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include <string>

#include "gateway/around.h"
#include "gateway/call.h"
#include "gateway/effects.h"
#include "gateway/watch.h"

// An interface request must be made on a socket.
static int check_descriptor(const trap_call& c) {
  char target[32] = "";
  std::string link =
      caller_proc_path(c.tid, "fd/" + std::to_string(static_cast<int>(c.arguments[0])));
  if (readlink(link.c_str(), target, sizeof target - 1) < 0) return -EBADF;
  return strncmp(target, "socket:", 7) == 0 ? 0 : -ENOTTY;
}

static bool is_ioctl(const trap_call& c) {
  return c.request < kFaultInitModule;
}

static const trap_kind& kind_of(const trap_call& c) {
  if (!is_ioctl(c)) return kTrapKindModule;
  return c.request == kFaultVlan ? kTrapKindVlan : kTrapKindWireless;
}

// Reads and checks the call itself; 0 or a negative errno.
static int read_call(trap_state& trap, trap_call& c, journal_entry& entry) {
  entry.request = is_ioctl(c) ? c.request : 0;
  int status = kind_of(c).read(trap, c, entry);
  caller_identify(trap.caller, c.tid, entry.pid, entry.comm);
  int descriptor = is_ioctl(c) ? check_descriptor(c) : 0;
  return descriptor != 0 ? descriptor : status;
}

static void respond(const trap_state& trap, const trap_call& c, int status, uint32_t flags) {
  seccomp_notif_resp response = {};
  response.id = c.id;
  response.error = status;
  response.flags = flags;
  // Fails only when the caller is gone, and then nobody waits for the answer.
  static_cast<void>(ioctl(trap.listener, SECCOMP_IOCTL_NOTIF_SEND, &response));
}

static void delay(trap_state& trap, const trap_call& c, const fault_rule& rule) {
  trap_delayed held = {};
  held.id = c.id;
  held.since_us = journal_now_us();
  held.due_us = held.since_us + rule.delay_ms * 1000LL;
  held.tid = c.tid;
  held.arch = c.arch;
  held.number = c.number;
  memcpy(held.arguments, c.arguments, sizeof held.arguments);
  held.rule = rule;
  trap.delayed.push_back(held);
}

// RULE: the one whose delay is over, or null for a new call.
static void serve(trap_state& trap, trap_call& c, const fault_rule* rule) {
  trap_catch_up(trap);
  around_go_on(trap);
  journal_entry entry = {};
  int status = read_call(trap, c, entry);
  if (!trap_still_waiting(trap, c)) return;  // what was read may be another process's
  fault_rule taken = {};
  if (rule) {
    taken = *rule;
  } else if (fault_take(trap.faults, c.request, entry.has_sub, entry.sub, entry.interface, taken)) {
    if (taken.delay_ms > 0) return delay(trap, c, taken);
  }
  entry.injected = rule || taken.left > 0;
  entry.delay_ms = taken.delay_ms;
  if (taken.error != 0) status = -taken.error;
  c.is_short = taken.is_short;
  c.short_bytes = static_cast<size_t>(taken.short_bytes);
  c.has_count = taken.has_count;
  c.count = taken.count;
  if (status == 0) status = kind_of(c).act(trap, c, entry);
  entry.result = status;
  process_actor actor = process_actor_of(trap.processes, trap.calls, c.tid, entry.pid, entry.comm);
  entry.cause = actor.cause;
  journal_append(trap.log, entry, driver_now_us(trap.driver));
  respond(trap, c, status, 0);
  effect_tell_air(trap, &actor);
}

// The box answers a request or a module call; of the others it only takes notice.
static bool is_answered(const trap_call& c) {
  switch (c.call) {
    case trapped::kInitModule:
    case trapped::kFinitModule:
    case trapped::kDeleteModule:
      return true;
    case trapped::kIoctl:
      return c.request != SIOCSIFFLAGS;
    default:
      return false;
  }
}

static void look_at(trap_state& trap, const trap_call& c) {
  trap_catch_up(trap);
  if (!trap_still_waiting(trap, c)) return;
  if (c.call == trapped::kIoctl) {
    watch_interface_flags(trap, c);
  } else {
    watch_call(trap, c);
  }
  respond(trap, c, 0, SECCOMP_USER_NOTIF_FLAG_CONTINUE);
}

static uint32_t request_of(const trap_call& c) {
  switch (c.call) {
    case trapped::kInitModule:
      return kFaultInitModule;
    case trapped::kFinitModule:
      return kFaultFinitModule;
    case trapped::kDeleteModule:
      return kFaultDeleteModule;
    default:
      return static_cast<uint32_t>(c.arguments[1]);
  }
}

// The upper halves of a 32-bit program's arguments mean nothing.
static trap_call call_of(uint64_t id, int32_t tid, uint32_t arch, int number,
                         const uint64_t* arguments) {
  trap_call c = {};
  c.id = id;
  c.tid = tid;
  c.arch = arch;
  c.number = number;
  for (int i = 0; i < kTrapArguments; ++i) {
    c.arguments[i] = arch == AUDIT_ARCH_I386 ? static_cast<uint32_t>(arguments[i]) : arguments[i];
  }
  c.call = trapped_find(arch, number);
  c.request = request_of(c);
  return c;
}

// A newer kernel may fill a longer record than the one this program was built with, hence the spare
// room.
void trap_take(trap_state& trap) {
  union {
    seccomp_notif notification;
    char room[512];
  } received;
  memset(&received, 0, sizeof received);
  if (ioctl(trap.listener, SECCOMP_IOCTL_NOTIF_RECV, &received) < 0) return;
  const seccomp_notif& n = received.notification;
  trap_call c = call_of(n.id, static_cast<int32_t>(n.pid), n.data.arch, n.data.nr,
                        reinterpret_cast<const uint64_t*>(n.data.args));
  if (is_answered(c)) {
    serve(trap, c, nullptr);
  } else {
    look_at(trap, c);
  }
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
    trap_call c = call_of(held.id, held.tid, held.arch, held.number, held.arguments);
    serve(trap, c, &held.rule);
  }
  return next < 0 ? -1 : static_cast<int>((next - now + 999) / 1000);
}
