#include "steer/bss_service.h"

#include <cstdlib>

#include "diag/trace.h"
#include "profile/profile.h"
#include "sys/board.h"
#include "sys/host_library.h"

static constexpr int kServiceBound = 8;

int wlan_getBSSHNCService(int bss, int* service) {
  *service = 0;
  char field[kProfileFieldBuffer] = {};
  const int found = wifiprofile_getParam_with_index(bss_profile(bss), "BSSHNCService",
                                                    bss_list_position(bss), field, kServiceBound);
  if (found == 0) {
    // Speaks of an update though it read: kept.
    REV_ERROR("failed to update wifi profile, ret:%d\n ", found);
    return -1;
  }
  *service = atoi(field);
  REV_TRACE("get BssHNCService:%d sucess \n", *service);
  return 0;
}

void wlan_syncBhSetting(int bss, int setting, const char* value) {
  int service = 0;
  if (wlan_getBSSHNCService(bss, &service) != 0 || service != kBackhaulService) return;
  rev_set_bh_setting(bss, setting, value);
}
