#pragma once

// BSS transition management (802.11v) of the radio of a BSS. 0, or -1, reported, when the
// driver refuses or, where stated, may not be queried yet.

// 1 when the driver supports it, or 0 when it says that it does not, which is a success.
// Not before the driver may be queried.
int wlan_getBtmCapable(int index, int* capable);

// Whether it is enabled, 1 or 0.
int wlan_getBtmEnable(int index, int* enable);

// Stores the switch in the profile, then sets it in the driver; the profile keeps it
// after a refusal. Not before the driver may be queried.
int wlan_setBtmEnable(int index, int enable);
