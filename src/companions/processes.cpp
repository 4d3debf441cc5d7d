#include "companions/processes.h"

#include <cstdio>
#include <cstring>

#include "companions/record.h"
#include "diag/trace.h"
#include "profile/store.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/command.h"

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

static int radio_on(int radio) {
  return profile_number(bss_profile(radio), "RadioOn", kSwitchLimit);
}

// "0" or an empty value means automatic; only the first character counts.
static bool channel_is_automatic() {
  char channel[kProfileFieldBuffer] = {};
  const int found =
      wifiprofile_getParam(bss_profile(kRadio24), "Channel", channel, sizeof channel - 1);
  return found == 0 || channel[0] == '0' || channel[0] == '\0';
}

// The controls read all their keys, even after the first has decided, because the store
// reports every key that it cannot read.

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

// Whether any of 16 BSSes, starting at the radio's first, names a server. From radio 1
// the walk goes on into the 5 GHz profile, from radio 9 past the end of its lists: kept
// on purpose.
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

static companion rtdot1xd = {
    .control = "rtdot1x_start",
    .name = "rtdot1xd",
    .start = "/sbin/rtdot1xd &",
    .stop = "/usr/bin/killall -9 rtdot1xd",
    .quiet = true,
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .running = false,
    .asked = false,
};
static companion rtinicapd = {
    .control = "rtdot1x_start",
    .name = "rtinicapd",
    .start = "/sbin/rtinicapd &",
    .stop = "/usr/bin/killall -9 rtinicapd",
    .quiet = true,
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .running = false,
    .asked = false,
};

static bool listed(const char* name) {
  char probe[64];
  snprintf(probe, sizeof probe, "pgrep -l %s | grep -c %s", name, name);
  return probe_number(probe, 0) >= 1;
}

// Needs neither the lock nor `running`: calls are made in a turn, and the process list
// shows what runs.
void rtdot1x_start(int radio, int mode) {
  companion* process = radio == kRadio24 ? &rtdot1xd : &rtinicapd;
  if (mode == 1 && has_radius_server(radio)) {
    if (left_running(process)) return;
    cfg_executecmd(process->control, process->start);
    return;
  }
  if (mode != 0 && mode != 1) return;
  process->asked = true;
  if (listed(process->name)) run_command(process->stop);
}
