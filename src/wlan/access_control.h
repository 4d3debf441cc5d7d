#pragma once

// Access control list of one BSS, in the running driver only: nothing is written
// to the profile, so it is gone after a restart. The driver checks index, policy
// and addresses. Each returns 0 when the driver took the command, else -1.

// What the list is for; the driver's number, passed on as given.
int wlan_setMacAddressControlEnabled(int bss, int policy);

// Adds a station by its MAC address text, passed on as given; the name is not
// used.
int wlan_setMacAddressControlAdd(int bss, const char* mac_address, const char* name);

int wlan_setMacAddressControlDelete(int bss, const char* mac_address);

// Empties the list.
int wlan_setMacAddressControlClear(int bss);
