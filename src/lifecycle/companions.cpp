#include "lifecycle/companions.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "profile/profile.h"
#include "profile/profile_values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/probe.h"
#include "sys/shell.h"

// What was started. Written by the worker, and by the RPC thread in a reset or
// when a setting switches a process; read by both.
static std::atomic<bool> dcs_running;
static std::atomic<bool> mtk_ctrl_running;
static std::atomic<bool> wapp_running;

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

static bool dcs_wanted() {
  const char* profile = bss_profile(kRadio24);
  return profile_number(profile, "MSODCSOn", kSwitchLimit) != 0 &&
         profile_number(profile, "USERDCSOn", kSwitchLimit) != 0 && radio_on(kRadio24) != 0 &&
         channel_is_automatic();
}

void dcsStart(int mode) {
  if (mode != 0 && !dcs_running && dcs_wanted()) {
    RPC_TRACE("Sart dcs\n");
    cfg_executecmd(__func__, "dcs&");
    dcs_running = true;
  } else if (mode == 0 && dcs_running) {
    RPC_TRACE("Stop dcs\n");
    cfg_executecmd(__func__, "/bin/kill $(pgrep -f dcs | awk '{print $1}')");
    dcs_running = false;
  }
}

void MtkCtrlStart(int mode) {
  if (mode != 0 && !mtk_ctrl_running && (radio_on(kRadio24) != 0 || radio_on(kRadio5) != 0)) {
    RPC_TRACE("Sart mtk_ctrl\n");
    cfg_executecmd(__func__, "mtk_ctrl&");
    mtk_ctrl_running = true;
  } else if (mode == 0 && mtk_ctrl_running) {
    RPC_TRACE("Stop mtk_ctrl\n");
    cfg_executecmd(__func__, "/bin/kill $(pgrep -f mtk_ctrl | awk '{print $1}')");
    mtk_ctrl_running = false;
  }
}

void wappStart(int mode) {
  if (hasMTK7615() == 0) return;
  if (mode != 0 && !wapp_running) {
    RPC_TRACE("Sart wapp\n");
    run_command("wapp -d2 -v2 -f /etc/wapp_ap.conf &");
    wapp_running = true;
  } else if (mode == 0 && wapp_running) {
    RPC_TRACE("Stop wapp\n");
    run_command("/bin/kill $(pgrep -f wapp | awk '{print $1}')");
    wapp_running = false;
  }
}

// Whether any of 16 BSSes from the radio on names a server. From radio 1 the
// walk runs on into the 5 GHz profile, from radio 9 past its lists: kept.
static bool has_radius_server(int radio) {
  static constexpr int kSteps = 16;
  static constexpr int kServerLimit = 16;
  for (int bss = radio; bss < radio + kSteps; ++bss) {
    char server[kProfileFieldBuffer] = {};
    const int found = wifiprofile_getParam_with_index(bss_profile(bss), "RADIUS_Server",
                                                      bss_list_position(bss), server, kServerLimit);
    if (found != 0 && strcmp(server, "0.0.0.0") != 0) return true;
  }
  return false;
}

void rtdot1x_start(int radio, int mode) {
  const bool first = radio == kRadio24;
  if (mode == 1 && has_radius_server(radio)) {
    cfg_executecmd(__func__, first ? "/sbin/rtdot1xd &" : "/sbin/rtinicapd &");
    return;
  }
  if (mode != 0 && mode != 1) return;
  int running = 0;
  const char* probe =
      first ? "pgrep -l rtdot1xd | grep -c rtdot1xd" : "pgrep -l rtinicapd | grep -c rtinicapd";
  if (!probe_number(probe, &running) || running < 1) return;
  run_command(first ? "/usr/bin/killall -9 rtdot1xd" : "/usr/bin/killall -9 rtinicapd");
}
