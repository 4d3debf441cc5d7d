#pragma once

// Transmit power limits of a radio (1 or 9), which the driver keeps per channel. 0, or
// -1, reported, when the driver fails; the limit is 0 then.

// The limit of the current channel, dBm; returns -1, unreported, when the driver has
// none.
int wlan_getOnChannelMaxTxPowerdBm(int radio, int* dbm);

// The highest limit of all channels, dBm; 0 if there are none.
int wlan_getRadioMaxTxPowerdBm(int radio, int* dbm);
