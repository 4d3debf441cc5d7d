#include "daemon/instance.h"

#include "sys/command.h"
#include "sys/record_lock.h"

static constexpr char kProbe[] = "pgrep -l portmap | grep -c portmap";
static constexpr char kLockFile[] = "/tmp/.wlanrpc_lock";

bool portmapper_running() {
  return probe_number(kProbe, 1) >= 1;
}

int check_instance() {
  return try_record_lock(kLockFile) ? 1 : 0;
}
