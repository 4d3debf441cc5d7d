#pragma once

// Load, init and restart only queue a request and return 0.
int wlan_load();
int wlan_init();

// Restarts the radio of a BSS, or both for 255; any other index is reported.
int wlan_restart(int index);
int wlan_restart_all();

// Resets in the caller's thread, after any load in progress. 0, or -1 while an init or a
// restart runs.
int wlan_reset();
