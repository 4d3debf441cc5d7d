#pragma once

// The channel in use by the radio of a BSS. 0, also when no socket could be had
// and `*channel` stays as it is, or -1 when the driver does not say; both are
// reported.
int wlan_getCurrentChannel(int bss, int* channel);
