#include "gateway/call.h"

#include <linux/seccomp.h>
#include <sys/ioctl.h>

bool trap_still_waiting(const trap_state& trap, const trap_call& c) {
  uint64_t id = c.id;
  return ioctl(trap.listener, SECCOMP_IOCTL_NOTIF_ID_VALID, &id) == 0;
}
