#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>

#include "diag/trace.h"
#include "lifecycle/companions.h"
#include "profile/profile.h"
#include "profile/profile_values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/shell.h"

static constexpr char kMarker[] = "/tmp/mtk_bnd_file";

// Written by the worker, and by the RPC thread in a reset or when the setting
// is switched; read by both.
static std::atomic<bool> band_steering_running;

namespace {

struct identity {
  char ssid[kProfileFieldBuffer];
  char authentication[kProfileFieldBuffer];
  char passphrase[kProfileFieldBuffer];
};

}  // namespace

// What a station sees of the first BSS of a radio; empty where the profile has
// nothing that fits.
static identity identity_of(int radio) {
  const char* profile = bss_profile(radio);
  identity bss = {};
  static_cast<void>(wifiprofile_getParam(profile, "SSID1", bss.ssid, 32));
  static_cast<void>(
      wifiprofile_getParam_with_index(profile, "AuthMode", 0, bss.authentication, 20));
  static_cast<void>(wifiprofile_getParam(profile, "WPAPSK1", bss.passphrase, 65));
  return bss;
}

static const char* first_difference(const identity& a, const identity& b) {
  if (strcmp(a.ssid, b.ssid) != 0) return "SSID";
  if (strcmp(a.authentication, b.authentication) != 0) return "authentication mode";
  if (strcmp(a.passphrase, b.passphrase) != 0) return "wpa key";
  return nullptr;
}

int isAbleToEnableBandSteering() {
  const char* difference = first_difference(identity_of(kRadio24), identity_of(kRadio5));
  if (difference == nullptr) return 1;
  RPC_TRACE("unable to enable BandSteering because 2.4G and 5G %s is different\n", difference);
  wifiprofile_updateParam_force(bss_profile(kRadio24), "BandSteering", "0", "");
  wifiprofile_updateParam_force(bss_profile(kRadio5), "BandSteering", "0", "");
  return 0;
}

static void stop_band_steering() {
  if (!band_steering_running) return;
  trace_rpc("bndstrgStart", "Stop band steering\n");
  if (hasMTK7615() != 0) {
    wappStart(0);
    run_command("/bin/kill $(pgrep -f bs20 | awk '{print $1}')");
    if (profile_number(bss_profile(kRadio24), "RSG_Enable", kSwitchLimit) == 0) {
      run_command("iwpriv ra8 set ApEnableRadioChStats=0");
      run_command("iwpriv ra0 set ApEnableRadioChStats=0");
    }
  } else {
    run_command("/bin/kill $(pgrep -f bndstrg_1 | awk '{print $1}')");
    run_command("/bin/rm /tmp/mtk_bnd_file");
  }
  band_steering_running = false;
}

// Looks for the daemon's marker file up to ten times, a second apart. Returns
// how often it looked.
static int wait_for_marker() {
  int looks = 0;
  while (looks <= 9) {
    ++looks;
    if (path_exists(kMarker)) {
      printf("bnd is started and count is %d\n", looks);
      break;
    }
    fputs("Need to wait for 1 second", stdout);
    sleep(1);
  }
  return looks;
}

static void start_band_steering() {
  trace_rpc("bndstrgStart", "Sart band steering\n");
  if (hasMTK7615() != 0) {
    run_command("/sbin/EasyMesh_openwrt.sh");
    run_command("iwpriv ra8 set ApEnableRadioChStats=1");
    run_command("iwpriv ra0 set ApEnableRadioChStats=1");
    band_steering_running = true;
    return;
  }
  cfg_executecmd("bndstrgStart", "bndstrg_1&");
  // A marker found at the ninth look counts as not started, none after ten
  // looks as started: kept on purpose.
  if (wait_for_marker() != 9) band_steering_running = true;
}

static bool band_steering_wanted() {
  return profile_number(bss_profile(kRadio24), "BandSteering", kSwitchLimit) != 0 &&
         profile_number(bss_profile(kRadio24), "RadioOn", kSwitchLimit) != 0 &&
         profile_number(bss_profile(kRadio5), "RadioOn", kSwitchLimit) != 0 &&
         bss_number(kRadio24, "BssEnabled", kSwitchLimit) != 0 &&
         bss_number(kRadio5, "BssEnabled", kSwitchLimit) != 0;
}

void bndstrgStart(int mode) {
  if (mode == 0 || isAbleToEnableBandSteering() == 0) {
    stop_band_steering();
    return;
  }
  if (band_steering_running) return;
  if (!band_steering_wanted()) {
    RPC_TRACE("can't enable band steering as radio/home user ssid isn't enabled\n");
    return;
  }
  start_band_steering();
}
