#pragma once

// Switches the driver's channel-load statistics of a radio (1 or 9) and notes
// the switch in its profile. 0, or -1 when the driver may not be queried yet,
// the profile cannot be written or no shell could be run, each reported.
int wlan_setChannelUtilizationEnable(int radio, int enable);
