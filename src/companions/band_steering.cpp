#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "companions/processes.h"
#include "companions/record.h"
#include "diag/trace.h"
#include "profile/store.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/whole_file.h"

static constexpr char kMarker[] = "/tmp/mtk_bnd_file";

// The lock is not held during the wait for the marker, so that a setting on the RPC
// thread does not wait for seconds with the worker. On MT7615 boards `running` refers to
// the EasyMesh script.
static companion band_steering = {
    .control = "bndstrgStart",
    .name = "bndstrg_1",
    .start = "bndstrg_1&",
    .stop = "/bin/kill $(pgrep -f bndstrg_1 | awk '{print $1}')",
    .quiet = true,
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .running = false,
    .asked = false,
};

namespace {

struct identity {
  char ssid[kProfileFieldBuffer];
  char authentication[kProfileFieldBuffer];
  char passphrase[kProfileFieldBuffer];
};

}  // namespace

// What a station sees of a radio's first BSS; empty where the profile has no usable
// value.
static identity identity_of(int radio) {
  const char* profile = bss_profile(radio);
  identity bss = {};
  static_cast<void>(wifiprofile_getParam(profile, "SSID1", bss.ssid, 32));
  static_cast<void>(read_bss_field(radio, "AuthMode", bss.authentication, 20));
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
  force_value(kRadio24, "BandSteering", "0");
  force_value(kRadio5, "BandSteering", "0");
  return 0;
}

namespace {

struct steering_settings {
  int enabled;
  int radio24;
  int statistics;  // radio statistics that stay on afterwards
  int radio5;
  int bss24;
  int bss5;
};

}  // namespace

static steering_settings read_settings() {
  const char* profile24 = bss_profile(kRadio24);
  return {
      .enabled = profile_number(profile24, "BandSteering", kSwitchLimit),
      .radio24 = profile_number(profile24, "RadioOn", kSwitchLimit),
      .statistics = profile_number(profile24, "RSG_Enable", kSwitchLimit),
      .radio5 = profile_number(bss_profile(kRadio5), "RadioOn", kSwitchLimit),
      .bss24 = bss_number(kRadio24, "BssEnabled", kSwitchLimit),
      .bss5 = bss_number(kRadio5, "BssEnabled", kSwitchLimit),
  };
}

static bool wanted(const steering_settings& settings) {
  return settings.enabled != 0 && settings.radio24 != 0 && settings.radio5 != 0 &&
         settings.bss24 != 0 && settings.bss5 != 0;
}

static void stop_locked(const steering_settings& settings) {
  if (!band_steering.running) return;
  trace_rpc(band_steering.control, "Stop band steering\n");
  if (hasMTK7615() != 0) {
    wappStart(0);
    run_command("/bin/kill $(pgrep -f bs20 | awk '{print $1}')");
    if (settings.statistics == 0) {
      run_command("iwpriv ra8 set ApEnableRadioChStats=0");
      run_command("iwpriv ra0 set ApEnableRadioChStats=0");
    }
  } else {
    run_command(band_steering.stop);
    run_command("/bin/rm /tmp/mtk_bnd_file");
  }
  band_steering.running = false;
}

// Returns whether a start command was run.
static bool start_locked(const steering_settings& settings) {
  if (band_steering.running) return false;
  if (!wanted(settings)) {
    trace_rpc(band_steering.control,
              "can't enable band steering as radio/home user ssid isn't enabled\n");
    return false;
  }
  band_steering.running = true;
  const bool mt7615 = hasMTK7615() != 0;
  if (!mt7615 && left_running(&band_steering)) return false;
  trace_rpc(band_steering.control, "Sart band steering\n");
  if (mt7615) {
    run_command("/sbin/EasyMesh_openwrt.sh");
    run_command("iwpriv ra8 set ApEnableRadioChStats=1");
    run_command("iwpriv ra0 set ApEnableRadioChStats=1");
  } else {
    cfg_executecmd(band_steering.control, band_steering.start);
  }
  return true;
}

// Looks for the daemon's marker file up to ten times, one second apart. Returns how often
// it looked.
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

static void forget_start() {
  pthread_mutex_lock(&band_steering.lock);
  band_steering.running = false;
  pthread_mutex_unlock(&band_steering.lock);
}

void bndstrgStart(int mode) {
  const steering_settings settings = read_settings();
  const bool on = mode != 0 && isAbleToEnableBandSteering() != 0;
  bool started = false;
  pthread_mutex_lock(&band_steering.lock);
  if (on) {
    started = start_locked(settings);
  } else {
    stop_locked(settings);
  }
  pthread_mutex_unlock(&band_steering.lock);
  // Finding the marker at the ninth look counts as a failed start, and never finding it
  // as a success: kept on purpose.
  if (started && hasMTK7615() == 0 && wait_for_marker() == 9) forget_start();
}
