#pragma once

// Switches the driver's channel-load statistics of a radio (1 or 9) and notes
// the switch in its profile. 0, or -1 when the driver may not be queried yet,
// the profile cannot be written or no shell could be run, each reported.
int wlan_setChannelUtilizationEnable(int radio, int enable);

// Whether they are on: 1, or 0 when the driver says that they are off. 0, or -1
// when the driver may not be queried yet or fails, reported.
int wlan_getChannelUtilizationEnable(int radio, int* enable);

// How busy the channel was over the last period, 0 to 100 percent; 0 for a
// period of 0. 0 or -1, as above, and while they are off.
int wlan_getChannelUtilization(int radio, int* utilization);
