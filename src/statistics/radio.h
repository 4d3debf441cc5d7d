#pragma once

#include <cstdint>

#include "statistics/radstat_wire.h"

// Statistics of a radio, 1 or 9, from its statistics daemon. Every getter queries the
// daemon, waits at most two seconds and returns 0. A value that is not available is -1, a
// packet count 0. A daemon with nothing new answers zeros; its last good answer is used
// then.

struct channel_statistics {
  int32_t channel_busy;
  int32_t ap_activity;
  int32_t busy;
};
struct noise_floor {
  int32_t minimum;
  int32_t maximum;
  int32_t median;
  int32_t average;
};
using rssi_table = int64_t[kRssiEntries];

// Percentages of the channel's time: seen busy, used by our own AP, busy.
int wlan_getChannelStatistics(int index, int32_t* cst, int32_t* ap_act, int32_t* busy);

int wlan_getChannelNoiseFloor(int index, int32_t* min, int32_t* max, int32_t* median,
                              int32_t* average);

int wlan_getRadioTxPackets(int index, int64_t* count);
int wlan_getRadioRxPackets(int index, int64_t* count);

// Percentage of retransmissions.
int wlan_getRetransmissionMetric(int index, int* percent);

int wlan_getRSSITable(int index, int64_t (&table)[kRssiEntries]);

// Restarts the radio's daemon, or stops it, and switches the driver's statistics of ra0
// or ra8. `report` and `measure` are passed to the daemon unchanged. After a stop all
// values read -1. Always returns 0.
int wlan_setRadStatEnable(int index, int enable, int report, int measure);

// The same with the daemon's third option, which is 0 above. An index below 1 changes
// nothing and returns -1.
int wlan_setRadStatEnable_1(int index, int enable, int report, int measure, int raw);

// The index last switched, -1 at first. RPC thread only.
extern int last_radstat_index;
