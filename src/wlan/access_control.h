#pragma once

// Access control list of one BSS, in the running driver only: nothing is written to the
// profile, so a restart loses it. The driver checks index, policy and addresses. Each
// returns 0 when the driver accepted the command, else -1.

// Sets the list's policy, the driver's number, passed on unchanged.
int wlan_setMacAddressControlEnabled(int bss, int policy);

// Adds a station by its MAC address text, passed on unchanged; the name is not used.
int wlan_setMacAddressControlAdd(int bss, const char* mac_address, const char* name);

int wlan_setMacAddressControlDelete(int bss, const char* mac_address);

int wlan_setMacAddressControlClear(int bss);
