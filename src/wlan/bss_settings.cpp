#include "wlan/bss_settings.h"

#include <cstdio>

#include "profile/values.h"
#include "sys/board.h"
#include "wlan/bss_field.h"
#include "wlan/bss_service.h"

static int write_numbered_key(const char* caller, const char* prefix, int bss, const char* value) {
  char key[32];
  snprintf(key, sizeof key, "%s%d", prefix, bss_key_number(bss));
  return update_status(caller, write_value(bss, key, value), "");
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
  const number_text value = decimal(enable);
  // The host accepts seven characters.
  char told[8];
  snprintf(told, sizeof told, "%.7s", value.text);
  wlan_syncBhSetting(index, kBackhaulEnable, told);
  if (!bss_in_range(__func__, index)) return 0;
  const unsigned result = write_traced_field(__func__, "BssEnabled", index, value.text);
  return update_status(__func__, result, kBlankEnd);
}

int wlan_setSsidAdvertisementEnabled(int bss, int enable) {
  wlan_syncBhSetting(bss, kBackhaulAdvertisement, decimal(enable).text);
  if (!bss_in_range(__func__, bss)) return 0;
  const unsigned result = write_traced_field(__func__, "HideSSID", bss, enable != 0 ? "0" : "1");
  return update_status(__func__, result, "");
}
