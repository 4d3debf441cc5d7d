#include "wlan/bss_field.h"

#include "diag/trace.h"
#include "profile/profile.h"
#include "sys/board.h"

bool bss_in_range(const char* caller, int bss) {
  if (bss_to_radio_index(bss) != -1) return true;
  trace_rev_error(caller, "Index %d should be range from 1 to %d\n", bss, kMaxBss);
  return false;
}

unsigned write_bss_field(const char* caller, const char* key, int bss, const char* value) {
  const unsigned result =
      wifiprofile_updateParam_with_index(bss_profile(bss), key, bss_list_position(bss), value, "");
  trace_rev(caller, "RPC %s status=%u, %s=%s, index=%d\n", caller, result, key, value, bss);
  return result;
}

int profile_status(const char* caller, unsigned result) {
  if (result != kProfileFailed) return 0;
  trace_rev_error(caller, "failed to update wifi profile, ret:%u\n", result);
  return -1;
}
