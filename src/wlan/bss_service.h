#pragma once

#include "profile/store.h"

// The service that a BSS provides to the home network. Changes of a backhaul BSS are
// passed on to its host.

// Service number of a backhaul BSS.
constexpr int kBackhaulService = 7;

// Reads the BSS's field of "BSSHNCService". `*service` is set to 0 first. Returns 0, or
// -1 when the profile has no such field.
int wlan_getBSSHNCService(int bss, int* service);

// Writes the BSS's field of "BSSHNCService". A backhaul BSS first gets the VLAN id of the
// first 2.4 GHz BSS, if that has one; a failure is reported and otherwise ignored.
// Returns the result of the profile update, 1 for written: kept on purpose.
int wlan_setBSSHNCService(int bss, int service);

// Further settings of a BSS for the home network, each a field of a separate list in the
// profile: backhaul enable, replicate flag, WDS mode. 0, or -1, reported, when the
// profile has no such field or cannot be written.
int wlan_set_bh_enable(int bss, int enable);
int wlan_get_bh_enable(int bss, int* enable);
int wlan_set_hnc_replicate(int bss, int replicate);
int wlan_get_hnc_replicate(int bss, int* replicate);
int wlan_set_hnc_wds_mode(int bss, int mode);
int wlan_get_hnc_wds_mode(int bss, int* mode);

// The radio to replicate, written as given. It is read with a limit of one character,
// which the store does not apply to the last field: both kept on purpose. The buffer
// therefore holds a whole field.
int wlan_set_hnc_replicate_radio(int bss, const char* radio);
int wlan_get_hnc_replicate_radio(int bss, char (&radio)[kProfileFieldBuffer]);

// Settings that are passed to the host, under its library's numbers.
constexpr int kBackhaulPassphrase = 0;
constexpr int kBackhaulSsid = 1;
constexpr int kBackhaulEnable = 2;
constexpr int kBackhaulAdvertisement = 3;
constexpr int kBackhaulAuthentication = 4;

// Passes a new value to the host if the BSS is a backhaul BSS; otherwise does nothing. A
// service that cannot be read counts as none.
void wlan_syncBhSetting(int bss, int setting, const char* value);
