#pragma once

// Settings of one BSS that are kept in the profile and take effect after a restart. The
// host of a backhaul BSS gets them first (see wlan/bss_service.h). The index is not
// checked: from 9 on it selects the 5 GHz profile, and a missing key fails. Returns 0,
// also when the value is unchanged, or -1.

// Network name, key "SSID<n>".
int wlan_setSSID(int bss, const char* ssid);

// Pass phrase, key "WPAPSK<n>"; the key index is not used.
int wlan_setKeyPassphrase(int bss, int key_index, const char* passphrase);

// Enables or disables a BSS, its field of "BssEnabled", from the next init or restart on.
// An index outside 1 to 16 is reported and returns 0.
int wlan_setEnable(int index, int enable);

// Shows or hides the BSS's name in beacons, its field of "HideSSID". An index outside 1
// to 16 is reported, after the host was informed, and returns 0.
int wlan_setSsidAdvertisementEnabled(int bss, int enable);
