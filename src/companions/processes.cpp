#include "companions/processes.h"

#include <pthread.h>

#include <cstring>

#include "diag/trace.h"
#include "profile/store.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/probe.h"
#include "sys/shell.h"

namespace {

// A process that is started once and killed by its name. The lock is held from
// the look at `running` to the end of the command: two threads start it once,
// and no stop overtakes a start. So a setting on the RPC thread waits for a
// command of the worker at most.
struct companion {
  const char* control;
  const char* name;
  const char* start;
  const char* stop;
  bool quiet;  // its output is thrown away, and its commands are logged
  pthread_mutex_t lock;
  bool running;
  bool asked;  // for one that was left running
};

}  // namespace

static companion dcs = {
    .control = "dcsStart",
    .name = "dcs",
    .start = "dcs&",
    .stop = "/bin/kill $(pgrep -f dcs | awk '{print $1}')",
    .quiet = true,
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .running = false,
    .asked = false,
};
static companion mtk_ctrl = {
    .control = "MtkCtrlStart",
    .name = "mtk_ctrl",
    .start = "mtk_ctrl&",
    .stop = "/bin/kill $(pgrep -f mtk_ctrl | awk '{print $1}')",
    .quiet = true,
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .running = false,
    .asked = false,
};
static companion wapp = {
    .control = "wappStart",
    .name = "wapp",
    .start = "wapp -d2 -v2 -f /etc/wapp_ap.conf &",
    .stop = "/bin/kill $(pgrep -f wapp | awk '{print $1}')",
    .quiet = false,
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .running = false,
    .asked = false,
};

bool left_running(const char* control, const char* name, bool* asked) {
  const bool left = !*asked && process_runs(name);
  *asked = true;
  if (left) trace_rpc(control, "%s runs already\n", name);
  return left;
}

static void run_for(const companion& process, const char* command) {
  if (process.quiet) {
    cfg_executecmd(process.control, command);
  } else {
    run_command(command);
  }
}

static void switch_locked(companion* process, int mode, bool wanted) {
  if (mode != 0 && !process->running && wanted) {
    process->running = true;
    if (left_running(process->control, process->name, &process->asked)) return;
    trace_rpc(process->control, "Sart %s\n", process->name);
    run_for(*process, process->start);
  } else if (mode == 0 && process->running) {
    trace_rpc(process->control, "Stop %s\n", process->name);
    run_for(*process, process->stop);
    process->running = false;
  }
}

static void switch_companion(companion* process, int mode, bool wanted) {
  pthread_mutex_lock(&process->lock);
  switch_locked(process, mode, wanted);
  pthread_mutex_unlock(&process->lock);
}

static int radio_on(int radio) {
  return profile_number(bss_profile(radio), "RadioOn", kSwitchLimit);
}

// "0" or nothing is automatic; the first character tells.
static bool channel_is_automatic() {
  char channel[kProfileFieldBuffer] = {};
  const int found =
      wifiprofile_getParam(bss_profile(kRadio24), "Channel", channel, sizeof channel - 1);
  return found == 0 || channel[0] == '0' || channel[0] == '\0';
}

// The controls read all their keys whatever the mode and the first ones say, and
// the store reports each time what it cannot read.

void dcsStart(int mode) {
  const char* profile = bss_profile(kRadio24);
  const bool host = profile_number(profile, "MSODCSOn", kSwitchLimit) != 0;
  const bool user = profile_number(profile, "USERDCSOn", kSwitchLimit) != 0;
  const bool radio = radio_on(kRadio24) != 0;
  const bool automatic = channel_is_automatic();
  switch_companion(&dcs, mode, host && user && radio && automatic);
}

void MtkCtrlStart(int mode) {
  const bool first = radio_on(kRadio24) != 0;
  const bool second = radio_on(kRadio5) != 0;
  switch_companion(&mtk_ctrl, mode, first || second);
}

void wappStart(int mode) {
  if (hasMTK7615() != 0) switch_companion(&wapp, mode, true);
}

// Whether any of 16 BSSes from the radio on names a server. From radio 1 the
// walk runs on into the 5 GHz profile, from radio 9 past its lists: kept.
static bool has_radius_server(int radio) {
  static constexpr int kSteps = 16;
  static constexpr int kServerLimit = 16;
  for (int bss = radio; bss < radio + kSteps; ++bss) {
    char server[kProfileFieldBuffer] = {};
    const int found = read_bss_field(bss, "RADIUS_Server", server, kServerLimit);
    if (found != 0 && strcmp(server, "0.0.0.0") != 0) return true;
  }
  return false;
}

void rtdot1x_start(int radio, int mode) {
  static bool asked[2];
  const bool first = radio == kRadio24;
  if (mode == 1 && has_radius_server(radio)) {
    if (left_running(__func__, first ? "rtdot1xd" : "rtinicapd", &asked[first])) return;
    cfg_executecmd(__func__, first ? "/sbin/rtdot1xd &" : "/sbin/rtinicapd &");
    return;
  }
  if (mode != 0 && mode != 1) return;
  asked[first] = true;
  static constexpr size_t kCountSize = 16;
  int running = 0;
  const char* probe =
      first ? "pgrep -l rtdot1xd | grep -c rtdot1xd" : "pgrep -l rtinicapd | grep -c rtinicapd";
  if (!probe_number(probe, kCountSize, &running) || running < 1) return;
  run_command(first ? "/usr/bin/killall -9 rtdot1xd" : "/usr/bin/killall -9 rtinicapd");
}
