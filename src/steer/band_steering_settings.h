#pragma once

// The switch of band steering, "BandSteering" of both profiles.

// 0 or 1; other values change nothing and return -1. Writes both profiles,
// switches the driver of ra0 and ra8 and starts or stops the daemon, whose
// start may wait for it for ten seconds. Returns 0 whatever comes of these.
int wlan_setBandSteerEnable(int enable);

// What the 2.4 GHz profile says; 0 when it says nothing. Returns 0.
int wlan_getBandSteerEnable(int* enable);
