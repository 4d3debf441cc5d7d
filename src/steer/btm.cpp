#include "steer/btm.h"

#include <cerrno>
#include <cstdint>

#include "diag/trace.h"
#include "profile/values.h"
#include "steer/driver_records.h"
#include "steer/keys.h"
#include "sys/wext.h"
#include "wlan/driver_gate.h"

// The station's object describes the radio when no station is named.
static bool query(int index, btm_state* state) {
  return rtpriv_get_ioctl_2(index, kRtprivObject, kStationBtm, state, sizeof *state) == 1;
}

int wlan_getBtmCapable(int index, int* capable) {
  if (!driver_is_inited(__func__)) return -1;
  btm_state state = {};
  *capable = query(index, &state) ? 1 : 0;
  if (*capable == 1) return 0;
  if (errno == EOPNOTSUPP) {
    REV_TRACE("BTM is not capable. \n ");
    return 0;
  }
  REV_ERROR("get BTM capable failed. \n ");
  return -1;
}

int wlan_getBtmEnable(int index, int* enable) {
  btm_state state = {};
  if (!query(index, &state)) {
    REV_ERROR("get BTM enable failed. \n ");
    return -1;
  }
  *enable = state.enabled == 1 ? 1 : 0;
  return 0;
}

int wlan_setBtmEnable(int index, int enable) {
  if (!driver_is_inited(__func__)) return -1;
  force_value(index, "WNMEnable", decimal(enable).text);
  const btm_switch record = {
      .kind = kBtmOfRadio, .unused = 0, .value = static_cast<uint8_t>(enable)};
  if (rtpriv_set_ioctl_2(index, kRtprivObject, kObjectBtmEnable, &record, sizeof record) != 1) {
    REV_ERROR("set BTM enable failed. \n ");
    return -1;
  }
  REV_TRACE("set BTM enable = %d success. \n ", enable);
  return 0;
}
