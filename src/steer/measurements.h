#pragma once

// Capabilities of a radio (1 or 9). Each returns 0, or -1, reported, with the value
// unchanged when the driver fails.

// Global operating class of the channel. Not before the driver may be queried.
int wlan_getOperatingClass(int radio, int* operating_class);

// Whether the wireless mode in the profile includes HT (802.11n) and VHT
// (802.11ac), 1 or 0. Always 0.
int wlan_getHtSupport(int radio, int* support);
int wlan_getVHtSupport(int radio, int* support);

// Highest bit rate, whole Mbit/s.
int wlan_getRadioMaxBitRate(int radio, int* mbit_per_second);
