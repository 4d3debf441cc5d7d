#pragma once

#include <cstdint>

#include "statistics/radstat_wire.h"

// Statistics of a radio, 1 or 9, from its statistics daemon. Every getter asks
// the daemon anew, waits two seconds at most and returns 0: an output that
// could not be had is -1, a packet count 0. A daemon with nothing new is one
// that answers zeros; its last good answer then counts.

// What the callers receive of the values below.
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

// Shares of the channel's time in percent: seen busy, own AP's, busy.
int wlan_getChannelStatistics(int index, int32_t* cst, int32_t* ap_act, int32_t* busy);

int wlan_getChannelNoiseFloor(int index, int32_t* min, int32_t* max, int32_t* median,
                              int32_t* average);

// Packets sent and received.
int wlan_getRadioTxPackets(int index, int64_t* count);
int wlan_getRadioRxPackets(int index, int64_t* count);

// Retransmissions in percent.
int wlan_getRetransmissionMetric(int index, int* percent);

int wlan_getRSSITable(int index, int64_t (&table)[kRssiEntries]);

// Starts the radio's daemon anew, or stops it, and switches the driver's
// statistics of ra0 or ra8. `report` and `measure` go to the daemon as they
// are. Stopping makes the last good answer one of -1s. Returns 0, always.
int wlan_setRadStatEnable(int index, int enable, int report, int measure);

// The same with the daemon's third option, 0 above. An index below 1 changes
// nothing and returns -1.
int wlan_setRadStatEnable_1(int index, int enable, int report, int measure, int raw);

// The index that was switched last; -1 before. RPC thread only.
extern int last_radstat_index;
