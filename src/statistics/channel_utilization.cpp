#include "statistics/channel_utilization.h"

#include <cerrno>
#include <cstdio>

#include "diag/trace.h"
#include "profile/values.h"
#include "statistics/channel_load.h"
#include "sys/board.h"
#include "sys/command.h"
#include "sys/wext.h"
#include "wlan/driver_gate.h"

int wlan_setChannelUtilizationEnable(int radio, int enable) {
  if (!driver_is_inited(__func__)) return -1;
  if (write_number_key(__func__, radio, "ChannelUtilizationEnable", enable) != 0) return -1;
  char command[64];
  snprintf(command, sizeof command, "iwpriv %s set ApEnableRadioChStats=%d",
           bss_interface(radio).text, enable);
  if (run_command(command) != -1) return 0;
  REV_ERROR("failed to enable channel utilization\n ");
  return -1;
}

static bool query_load(int radio, channel_load_record* load) {
  return rtpriv_get_ioctl_2(radio, kRtprivObject, kObjectChannelLoad, load, sizeof *load) == 1;
}

int wlan_getChannelUtilizationEnable(int radio, int* enable) {
  if (!driver_is_inited(__func__)) return -1;
  channel_load_record load = {};
  if (query_load(radio, &load)) {
    *enable = 1;
    REV_TRACE(" channel utilization enabled. \n ");
    return 0;
  }
  // The driver's answer while its statistics are off.
  if (errno == EFAULT) {
    *enable = 0;
    REV_TRACE(" channel utilization disabled. \n ");
    return 0;
  }
  REV_ERROR(" get channel utilization failed. \n ");
  return -1;
}

// The share of the period in percent, at most 100. Rounded to single precision at each
// step, so that every machine gives the same result.
static int percentage(const channel_load_record& load) {
  if (load.period == 0) return 0;
  if (load.busy >= load.period) return 100;
  volatile float share = static_cast<float>(load.busy) / static_cast<float>(load.period);
  share = share * 100;
  return static_cast<int>(share);
}

int wlan_getChannelUtilization(int radio, int* utilization) {
  if (!driver_is_inited(__func__)) return -1;
  channel_load_record load = {};
  if (!query_load(radio, &load)) {
    REV_ERROR(" get channel utilization failed. \n ");
    return -1;
  }
  *utilization = percentage(load);
  REV_TRACE(" channel utilization = %u. BusyTime = %u, Period = %d\n ",
            static_cast<unsigned>(*utilization), load.busy, static_cast<int>(load.period));
  return 0;
}
