#pragma once

#include "profile/store.h"

// The service that a BSS provides to the home network, and the host of a
// backhaul BSS, which learns of its changes.

// Service number of a backhaul BSS.
constexpr int kBackhaulService = 7;

// Reads the BSS's field of "BSSHNCService". `*service` becomes 0 first. Returns
// 0, or -1 when the profile has no such field.
int wlan_getBSSHNCService(int bss, int* service);

// Writes the BSS's field of "BSSHNCService". A backhaul BSS first gets the VLAN
// id of the first 2.4 GHz BSS, where that has one; a failure is reported and
// does not stop it. Returns what the profile's update does, 1 for written: kept
// on purpose.
int wlan_setBSSHNCService(int bss, int service);

// Further settings of a BSS for the home network, each a field of its own list
// in the profile: backhaul enable, replicate flag, WDS mode. 0, or -1 where the
// profile has no such field or cannot be written, reported.
int wlan_set_bh_enable(int bss, int enable);
int wlan_get_bh_enable(int bss, int* enable);
int wlan_set_hnc_replicate(int bss, int replicate);
int wlan_get_hnc_replicate(int bss, int* replicate);
int wlan_set_hnc_wds_mode(int bss, int mode);
int wlan_get_hnc_wds_mode(int bss, int* mode);

// The radio to replicate, written as given. It is read with a bound of one
// character, which the store does not apply to the last field: both kept on
// purpose. So there is room for a whole field.
int wlan_set_hnc_replicate_radio(int bss, const char* radio);
int wlan_get_hnc_replicate_radio(int bss, char (&radio)[kProfileFieldBuffer]);

// Settings of which the host is told, by the numbers that its library knows.
constexpr int kBackhaulPassphrase = 0;
constexpr int kBackhaulSsid = 1;
constexpr int kBackhaulEnable = 2;
constexpr int kBackhaulAdvertisement = 3;
constexpr int kBackhaulAuthentication = 4;

// Tells the host a new value when the BSS is a backhaul BSS; else nothing. A
// service that cannot be read counts as none.
void wlan_syncBhSetting(int bss, int setting, const char* value);
