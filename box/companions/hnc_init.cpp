#include <signal.h>

#include "companions/companion.h"
#include "companions/programs.h"

static constexpr const char* kHncInitRecord = "/run/gwbox/hncinit.jsonl";

int hnc_init_main() {
  companion self = companion_begin({SIGUSR1, SIGUSR2});
  companion_ready();
  while (companion_pause(self, -1)) {
    if (self.signalled == SIGUSR1) {
      companion_record(kHncInitRecord, {{"signal", "USR1"}, {"wifi", "up"}});
    } else if (self.signalled == SIGUSR2) {
      companion_record(kHncInitRecord, {{"signal", "USR2"}, {"wifi", "down"}});
    }
    self.signalled = 0;
  }
  return 0;
}
