#include "statistics/radio.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "diag/trace.h"
#include "statistics/radstat_client.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/whole_file.h"

int last_radstat_index = -1;

static bool fetch(int index, radstat_reply* reply) {
  *reply = {};
  size_t length = sizeof *reply;
  return rad_ctrl_request_buffered(index, kRadstatRequest, sizeof kRadstatRequest, reply,
                                   &length) == 0;
}

int wlan_getChannelStatistics(int index, int32_t* cst, int32_t* ap_act, int32_t* busy) {
  *cst = *ap_act = *busy = -1;
  radstat_reply reply;
  if (!fetch(index, &reply)) return 0;
  *cst = reply.cst;
  *ap_act = reply.ap_act;
  *busy = reply.busy;
  REV_TRACE("Channel Statistics - CST: %d%% AP_act: %d%% BusyTime: %d%%\n", *cst, *ap_act, *busy);
  return 0;
}

int wlan_getChannelNoiseFloor(int index, int32_t* min, int32_t* max, int32_t* median,
                              int32_t* average) {
  *min = *max = *median = *average = -1;
  radstat_reply reply;
  if (!fetch(index, &reply)) return 0;
  *min = reply.noise_min;
  *max = reply.noise_max;
  *median = reply.noise_median;
  *average = reply.noise_average;
  REV_TRACE("Channel NF - Min: %d Max: %d Med: %d Avg: %d\n", *min, *max, *median, *average);
  return 0;
}

int wlan_getRadioTxPackets(int index, int64_t* count) {
  *count = 0;
  radstat_reply reply;
  if (!fetch(index, &reply)) return 0;
  *count = reply.tx_packets;
  REV_TRACE("TxCount : %d\n", reply.tx_packets);
  return 0;
}

int wlan_getRadioRxPackets(int index, int64_t* count) {
  *count = 0;
  radstat_reply reply;
  if (!fetch(index, &reply)) return 0;
  *count = reply.rx_packets;
  REV_TRACE("Rx Count : %d\n", reply.rx_packets);
  return 0;
}

int wlan_getRetransmissionMetric(int index, int* percent) {
  *percent = -1;
  radstat_reply reply;
  if (!fetch(index, &reply)) return 0;
  *percent = reply.retry;
  REV_TRACE("Retry percent : %d%%\n", *percent);
  return 0;
}

int wlan_getRSSITable(int index, int64_t (&table)[kRssiEntries]) {
  std::fill(table, table + kRssiEntries, -1);
  radstat_reply reply;
  if (!fetch(index, &reply)) return 0;
  std::copy(reply.rssi, reply.rssi + kRssiEntries, table);
  REV_TRACE("Completed copying %d RSSI table entries\n", kRssiEntries);
  return 0;
}

static void execute(const char* command) {
  trace_rev("wlan_setRadStatEnable_1", "executing %s\n", command);
  run_command(command);
}

// A separate program name for each radio, so that killall finds the right one.
static void make_program(int number) {
  char path[64];
  snprintf(path, sizeof path, "/var/run/radstat%d", number);
  if (name_exists(path)) return;
  char command[128];
  snprintf(command, sizeof command, "ln -s -T /bin/radstat %s", path);
  execute(command);
}

static void switch_driver(int index, int enable) {
  if (index == kRadio5) {
    execute(enable != 0 ? "iwpriv ra8 set ApEnableRadioChStats=1;"
                        : "iwpriv ra8 set ApEnableRadioChStats=0;");
  }
  if (index == kRadio24) {
    execute(enable != 0 ? "iwpriv ra0 set ApEnableRadioChStats=1;"
                        : "iwpriv ra0 set ApEnableRadioChStats=0;");
  }
}

int wlan_setRadStatEnable_1(int index, int enable, int report, int measure, int raw) {
  if (index < 1) return -1;
  const int number = index - 1;
  make_program(number);
  char command[128];
  snprintf(command, sizeof command, "killall radstat%d", number);
  execute(command);
  switch_driver(index, enable);
  if (enable != 0) {
    snprintf(command, sizeof command, "/var/run/radstat%d -i ra%d -r %d -m %d -R %d&", number,
             number, report, measure, raw);
    execute(command);
  } else {
    rad_ctrl_forget(index);
  }
  last_radstat_index = index;
  return 0;
}

int wlan_setRadStatEnable(int index, int enable, int report, int measure) {
  // Also 0 for a refused index: kept on purpose.
  wlan_setRadStatEnable_1(index, enable, report, measure, 0);
  return 0;
}
