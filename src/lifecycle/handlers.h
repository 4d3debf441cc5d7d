#pragma once

// The operations. Load, init and restart only queue and return 0.
int wlan_load();
int wlan_init();

// Of the radio of a BSS, or of both for 255; any other index is reported.
int wlan_restart(int index);
int wlan_restart_all();

// Resets in the caller's thread, once a load that runs has ended. 0, or -1 while
// an init or a restart runs.
int wlan_reset();
