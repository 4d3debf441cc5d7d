#include "wlan/bss_settings.h"

#include <cstdio>

#include "diag/trace.h"
#include "profile/profile.h"
#include "steer/bss_service.h"
#include "sys/board.h"
#include "wlan/bss_field.h"

// Writes the whole-value key "<prefix><n>" of a BSS on behalf of `caller`.
static int write_numbered_key(const char* caller, const char* prefix, int bss, const char* value) {
  char key[32];
  snprintf(key, sizeof key, "%s%d", prefix, bss_key_number(bss));
  return profile_status(caller, wifiprofile_updateParam(bss_profile(bss), key, value, ""));
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
  // The host takes seven characters.
  char told[8];
  snprintf(told, sizeof told, "%.7s", value);
  wlan_syncBhSetting(index, kBackhaulEnable, told);
  if (!bss_in_range(__func__, index)) return 0;
  const unsigned result = write_bss_field(__func__, "BssEnabled", index, value);
  if (result != kProfileFailed) return 0;
  REV_ERROR("failed to update wifi profile, ret:%u\n ", result);
  return -1;
}

int wlan_setSsidAdvertisementEnabled(int bss, int enable) {
  char value[16];
  snprintf(value, sizeof value, "%d", enable);
  wlan_syncBhSetting(bss, kBackhaulAdvertisement, value);
  if (!bss_in_range(__func__, bss)) return 0;
  return profile_status(__func__,
                        write_bss_field(__func__, "HideSSID", bss, enable != 0 ? "0" : "1"));
}
