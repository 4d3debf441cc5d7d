#include "steer/band_steering_settings.h"

#include <cstdio>

#include "companions/processes.h"
#include "diag/trace.h"
#include "profile/values.h"
#include "sys/board.h"
#include "sys/command.h"

static constexpr char kKey[] = "BandSteering";

static void switch_driver(int enable) {
  for (const int radio : {kRadio24, kRadio5}) {
    char command[64];
    snprintf(command, sizeof command, "iwpriv %s set BndStrgEnable=%d", bss_interface(radio).text,
             enable);
    run_command(command);
  }
}

int wlan_setBandSteerEnable(int enable) {
  if (enable != 0 && enable != 1) return -1;
  const char* value = enable == 1 ? "1" : "0";
  force_value(kRadio24, kKey, value);
  force_value(kRadio5, kKey, value);
  // The daemon never runs while the driver's band steering is off.
  if (enable == 1) switch_driver(1);
  bndstrgStart(enable);
  if (enable == 0) switch_driver(0);
  return 0;
}

int wlan_getBandSteerEnable(int* enable) {
  *enable = profile_number(bss_profile(kRadio24), kKey, kProfileFieldBuffer - 1);
  REV_TRACE("band steer enabled: %d\n ", *enable);
  return 0;
}
