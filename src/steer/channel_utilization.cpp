#include "steer/channel_utilization.h"

#include <cstdio>

#include "diag/trace.h"
#include "lifecycle/state.h"
#include "profile/profile.h"
#include "sys/board.h"
#include "sys/command.h"

int wlan_setChannelUtilizationEnable(int radio, int enable) {
  if (drivers_inited == 0) {
    REV_ERROR("dirver isn't inited. \n ");
    return -1;
  }
  char value[16];
  snprintf(value, sizeof value, "%d", enable);
  const unsigned result =
      wifiprofile_updateParam_force(bss_profile(radio), "ChannelUtilizationEnable", value, "");
  if (result == kProfileFailed) {
    REV_ERROR("failed to update wifi profile, ret:%u\n ", result);
    return -1;
  }
  char command[64];
  snprintf(command, sizeof command, "iwpriv ra%lld set ApEnableRadioChStats=%d",
           static_cast<long long>(radio) - 1, enable);
  if (run_command(command)) return 0;
  REV_ERROR("failed to enable channel utilization\n ");
  return -1;
}
