#pragma once

// BSS transition management (802.11v) of the radio of a BSS. 0, or -1 when the
// driver refuses or, where it says so, may not be queried yet; both reported.

// Whether the driver knows it: 1, or 0 when it says that it does not support
// it, which is a success. Not before the driver may be queried.
int wlan_getBtmCapable(int index, int* capable);

// Whether it is on, 1 or 0.
int wlan_getBtmEnable(int index, int* enable);

// Notes the switch in the profile, then sets it in the driver; a refusal leaves
// the note. Not before the driver may be queried.
int wlan_setBtmEnable(int index, int enable);
