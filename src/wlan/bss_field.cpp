#include "wlan/bss_field.h"

#include "diag/trace.h"
#include "profile/values.h"
#include "sys/board.h"

bool bss_in_range(const char* caller, int bss) {
  if (bss_to_radio_index(bss) != -1) return true;
  trace_rev_error(caller, "Index %d should be range from 1 to %d\n", bss, kMaxBss);
  return false;
}

unsigned write_traced_field(const char* caller, const char* key, int bss, const char* value) {
  const unsigned result = write_bss_field(bss, key, value);
  trace_rev(caller, "RPC %s status=%u, %s=%s, index=%d\n", caller, result, key, value, bss);
  return result;
}
