#include "lifecycle/steps.h"

#include "diag/trace.h"
#include "lifecycle/state.h"
#include "sys/command.h"
#include "sys/whole_file.h"

static constexpr char kHncMarker[] = "/nvram/hnc_enable";

bool modules_inserted(const char* caller) {
  if (lifecycle.modules_loaded) return true;
  trace_rpc(caller, "WLAN driver(s) are not loaded\n");
  return false;
}

bool hnc_running(const char* caller) {
  if (path_exists(kHncMarker)) return true;
  trace_rpc_error(caller, "%s HNC Process is not running \n", caller);
  return false;
}

int notify_hnc(int up) {
  return cfg_executecmd(__func__, up != 0 ? "killall -USR1 HncInit" : "killall -USR2 HncInit");
}
