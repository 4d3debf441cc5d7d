#include <cstdio>
#include <cstdlib>

#include "daemon/instance.h"
#include "daemon/supervisor.h"
#include "diag/trace.h"
#include "sys/limits.h"
#include "sys/process.h"

int main(int, char** argv) {
  reserve_standard_streams();
  survive_failed_writes();
  // Traces appear at once, even through a pipe.
  setvbuf(stdout, nullptr, _IOLBF, 0);
  if (!portmapper_running()) {
    RPC_TRACE("%s - Network and/or portmapper has not been setup\n", argv[0]);
    exit(0);
  }
  if (check_instance() == 0) {
    RPC_TRACE("Process already running\n");
    exit(0);
  }
  supervise();
}
