#pragma once

// Settings of one BSS that live in the profile; on air after a restart. A
// backhaul BSS's host is told first (see wlan/bss_service.h). The index is not
// checked: from 9 on it selects the 5 GHz profile, and a key that is not there
// fails. 0, also when the value is in place already, or -1.

// Network name, key "SSID<n>".
int wlan_setSSID(int bss, const char* ssid);

// Pass phrase, key "WPAPSK<n>"; the key index is not used.
int wlan_setKeyPassphrase(int bss, int key_index, const char* passphrase);

// Switches a BSS on or off, its field of "BssEnabled", from the next init or
// restart on. An index outside 1 to 16 is reported and answers 0.
int wlan_setEnable(int index, int enable);

// Shows the BSS's name in beacons or hides it, its field of "HideSSID". An index
// outside 1 to 16 is reported, after the host was told, and answers 0.
int wlan_setSsidAdvertisementEnabled(int bss, int enable);
