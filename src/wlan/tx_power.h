#pragma once

// Transmit power limits of a radio (1 or 9) as the driver has them per channel.
// The limit starts at 0; 0, or -1 with a report when the driver fails.

// The limit of the channel in use, dBm; -1, without a report, when the driver
// has none for it.
int wlan_getOnChannelMaxTxPowerdBm(int radio, int* dbm);

// The highest of all channels, dBm; 0 without any.
int wlan_getRadioMaxTxPowerdBm(int radio, int* dbm);
