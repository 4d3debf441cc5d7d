#include "wlan/tx_power.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "diag/trace.h"
#include "sys/board.h"
#include "sys/wext.h"
#include "wlan/power_layout.h"
#include "wlan/survey.h"

namespace {

struct power_limits {
  const power_layout* layout;
  size_t count;  // limited to what fits in the answer
  uint8_t bytes[kPowerLargest];
};

}  // namespace

static bool query(const char* caller, int radio, power_limits* limits) {
  *limits = {};
  limits->layout = hasMTK7615() != 0 ? &kPowerMt7615 : &kPowerOthers;
  const power_layout& layout = *limits->layout;
  if (rtpriv_get_ioctl(radio, kRtprivObject, kObjectPowerLimits, limits->bytes,
                       static_cast<unsigned>(layout.size)) != 1) {
    trace_rev_error(caller, " %s: get channel info failed \n ", caller);
    return false;
  }
  int32_t count = 0;
  memcpy(&count, limits->bytes, sizeof count);
  // The last entry may be truncated: it counts if its limit is in the answer.
  const size_t room = (layout.size - layout.first_entry - kPowerDbm - 1) / layout.entry_size + 1;
  limits->count = std::min(static_cast<size_t>(std::max(count, 0)), room);
  return true;
}

static const uint8_t* entry(const power_limits& limits, size_t number) {
  return limits.bytes + limits.layout->first_entry + limits.layout->entry_size * number;
}

int wlan_getOnChannelMaxTxPowerdBm(int radio, int* dbm) {
  *dbm = 0;
  power_limits limits;
  if (!query(__func__, radio, &limits)) return -1;
  int channel = -1;  // matches no entry, if the channel stays unknown
  if (wlan_getCurrentChannel(radio, &channel) != 0) return -1;
  for (size_t i = 0; i < limits.count; ++i) {
    if (entry(limits, i)[kPowerChannel] != channel) continue;
    *dbm = entry(limits, i)[kPowerDbm];
    REV_TRACE("max channel tx power is %d for channel: %d\n", *dbm, channel);
    return 0;
  }
  return -1;
}

int wlan_getRadioMaxTxPowerdBm(int radio, int* dbm) {
  *dbm = 0;
  power_limits limits;
  if (!query(__func__, radio, &limits)) return -1;
  for (size_t i = 0; i < limits.count; ++i) {
    const int limit = entry(limits, i)[kPowerDbm];
    if (limits.layout == &kPowerOthers) {
      REV_TRACE("channel num:%d txpower:%d\n", entry(limits, i)[kPowerChannel], limit);
    }
    *dbm = std::max(*dbm, limit);
  }
  REV_TRACE("max radio tx power is %d \n", *dbm);
  return 0;
}
