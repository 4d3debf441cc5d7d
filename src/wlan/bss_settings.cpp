#include "wlan/bss_settings.h"

#include <cstdio>

#include "diag/trace.h"
#include "profile/profile.h"
#include "steer/bss_service.h"
#include "sys/board.h"

// Writes the whole-value key "<prefix><n>" of a BSS on behalf of `caller`.
static int write_numbered_key(const char* caller, const char* prefix, int bss, const char* value) {
  char key[32];
  snprintf(key, sizeof key, "%s%d", prefix, bss_key_number(bss));
  const unsigned result = wifiprofile_updateParam(bss_profile(bss), key, value, "");
  if (result != kProfileFailed) return 0;
  trace_rev_error(caller, "failed to update wifi profile, ret:%u\n", result);
  return -1;
}

int wlan_setSSID(int bss, const char* ssid) {
  wlan_syncBhSetting(bss, kBackhaulSsid, ssid);
  return write_numbered_key(__func__, "SSID", bss, ssid);
}

int wlan_setKeyPassphrase(int bss, int /*key_index*/, const char* passphrase) {
  wlan_syncBhSetting(bss, kBackhaulPassphrase, passphrase);
  return write_numbered_key(__func__, "WPAPSK", bss, passphrase);
}
