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

int wlan_setEnable(int index, int enable) {
  char value[16];
  snprintf(value, sizeof value, "%d", enable);
  wlan_syncBhSetting(index, kBackhaulEnable, value);
  if (bss_to_radio_index(index) == -1) {
    REV_ERROR("Index %d should be range from 1 to %d\n", index, kMaxBss);
    return 0;
  }
  const unsigned result = wifiprofile_updateParam_with_index(bss_profile(index), "BssEnabled",
                                                             bss_list_position(index), value, "");
  REV_TRACE("RPC %s status=%u, %s=%s, index=%d\n", __func__, result, "BssEnabled", value, index);
  if (result != kProfileFailed) return 0;
  REV_ERROR("failed to update wifi profile, ret:%u\n ", result);
  return -1;
}
