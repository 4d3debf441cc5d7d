#pragma once

// The band steering switch, "BandSteering" in both profiles.

// 0 or 1; other values change nothing and return -1. Writes both profiles, switches the
// driver's band steering on ra0 and ra8 and starts or stops the daemon; a start may wait
// ten seconds for it. Returns 0 even if any of these fails.
int wlan_setBandSteerEnable(int enable);

// The value in the 2.4 GHz profile; 0 when it is missing. Returns 0.
int wlan_getBandSteerEnable(int* enable);
