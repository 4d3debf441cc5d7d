#include "daemon/instance.h"

#include "sys/probe.h"
#include "sys/record_lock.h"

static constexpr char kProbe[] = "pgrep -l portmap | grep -c portmap";
static constexpr size_t kProbeSize = 32;
static constexpr char kLockFile[] = "/tmp/.wlanrpc_lock";

bool portmapper_running() {
  int count = 0;
  return !probe_number(kProbe, kProbeSize, &count) || count >= 1;
}

int check_instance() {
  return try_record_lock(kLockFile) ? 1 : 0;
}
