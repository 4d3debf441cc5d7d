#include "base/profile_keys.h"

// Beginnings of names: most keys come once for each BSS.
static constexpr std::string_view kSecrets[] = {
    "WPAPSK",  "RADIUS_Key", "RADIUS_Acct_Key", "Key1Str", "Key2Str",
    "Key3Str", "Key4Str",    "WscVendorPin",    "WscPin",
};

bool profile_key_is_secret(std::string_view key) {
  for (std::string_view secret : kSecrets) {
    if (key.starts_with(secret)) return true;
  }
  return false;
}
