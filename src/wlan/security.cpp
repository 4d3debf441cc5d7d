#include "wlan/security.h"

#include <cstring>
#include <span>

#include "profile/values.h"
#include "wlan/bss_field.h"
#include "wlan/bss_service.h"

struct mode_name {
  const char* asked;    // the management stack's name
  const char* written;  // the driver's name
};

static constexpr mode_name kBasicEncryption[] = {{"None", "NONE"}};

static constexpr mode_name kBasicAuthentication[] = {{"None", "OPEN"}};

static constexpr mode_name kWpaEncryption[] = {{"None", "NONE"},
                                               {"AESEncryption", "AES"},
                                               {"TKIPEncryption", "TKIP"},
                                               {"TKIPandAESEncryption", "TKIPAES"}};

static constexpr mode_name kWpaAuthentication[] = {{"WPAPSK", "WPAPSK"},
                                                   {"WPA2PSK", "WPA2PSK"},
                                                   {"WPA", "WPA"},
                                                   {"WPA2", "WPA2"},
                                                   {"WPAPSKWPA2PSK", "WPAPSKWPA2PSK"},
                                                   {"WPA1WPA2", "WPA1WPA2"}};

static const char* written_as(std::span<const mode_name> names, const char* asked) {
  for (const mode_name& name : names) {
    if (strcmp(name.asked, asked) == 0) return name.written;
  }
  return "";
}

static int write_mode(const char* caller, const char* key, std::span<const mode_name> names,
                      int bss, const char* modes) {
  return static_cast<int>(write_traced_field(caller, key, bss, written_as(names, modes)));
}

int wlan_setBasicEncryptionModes(int bss, const char* modes) {
  if (!bss_in_range(__func__, bss)) return 0;
  return write_mode(__func__, "EncrypType", kBasicEncryption, bss, modes);
}

int wlan_setBasicAuthenticationModes(int bss, const char* modes) {
  if (!bss_in_range(__func__, bss)) return 0;
  if (strstr(modes, "None") != nullptr) wlan_syncBhSetting(bss, kBackhaulAuthentication, "None");
  return write_mode(__func__, "AuthMode", kBasicAuthentication, bss, modes);
}

int wlan_setWpaEncryptionModes(int bss, const char* modes) {
  if (!bss_in_range(__func__, bss)) return 0;
  return write_mode(__func__, "EncrypType", kWpaEncryption, bss, modes);
}

int wlan_setWpaBasicAuthenticationModes(int bss, const char* modes) {
  // Before the index is checked: kept on purpose.
  wlan_syncBhSetting(bss, kBackhaulAuthentication, modes);
  if (!bss_in_range(__func__, bss)) return 0;
  return write_mode(__func__, "AuthMode", kWpaAuthentication, bss, modes);
}

int wlan_setRadiusServerAddress(int bss, const char* address) {
  return static_cast<int>(write_bss_field(bss, "RADIUS_Server", address));
}
