#pragma once

// Switches the driver's channel-load statistics of a radio (1 or 9) and stores the
// setting in its profile. 0, or -1, reported, when the driver may not be queried yet, the
// profile cannot be written or no shell can be run.
int wlan_setChannelUtilizationEnable(int radio, int enable);

// 1 when they are on, 0 when the driver says that they are off. Returns 0, or -1,
// reported, when the driver may not be queried yet or fails.
int wlan_getChannelUtilizationEnable(int radio, int* enable);

// How busy the channel was over the last period, 0 to 100 percent; 0 for a period of 0.
// Returns as above; also -1 while the statistics are off.
int wlan_getChannelUtilization(int radio, int* utilization);
