#pragma once

// The service that a BSS provides to the home network, and the host of a
// backhaul BSS, which learns of its changes.

// Service number of a backhaul BSS.
constexpr int kBackhaulService = 7;

// Reads the BSS's field of "BSSHNCService". `*service` becomes 0 first. Returns
// 0, or -1 when the profile has no such field.
int wlan_getBSSHNCService(int bss, int* service);

// Settings of which the host is told, by the numbers that its library knows.
constexpr int kBackhaulPassphrase = 0;
constexpr int kBackhaulSsid = 1;
constexpr int kBackhaulEnable = 2;
constexpr int kBackhaulAdvertisement = 3;
constexpr int kBackhaulAuthentication = 4;

// Tells the host a new value when the BSS is a backhaul BSS; else nothing. A
// service that cannot be read counts as none.
void wlan_syncBhSetting(int bss, int setting, const char* value);
