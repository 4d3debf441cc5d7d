#include "steer/measurements.h"

#include <cstdint>

#include "diag/trace.h"
#include "profile/store.h"
#include "profile/values.h"
#include "steer/driver_records.h"
#include "sys/board.h"
#include "sys/wext.h"
#include "wlan/driver_gate.h"

static constexpr int kBitsPerMbit = 1000000;

int wlan_getOperatingClass(int radio, int* operating_class) {
  if (!driver_is_inited(__func__)) return -1;
  int32_t value = 0;
  if (rtpriv_get_ioctl_2(radio, kRtprivObject, kObjectOperatingClass, &value, sizeof value) != 1) {
    REV_ERROR(" get opt class failed. \n ");
    return -1;
  }
  *operating_class = value;
  REV_TRACE(" opt class = %d. \n ", value);
  return 0;
}

namespace {

// The driver's wireless modes that have HT, and whether they have VHT too.
struct mode_row {
  int mode;
  bool band5;
  bool vht;
};
constexpr mode_row kHtModes[] = {
    {6, false, false}, {7, false, false}, {9, false, false}, {8, true, false},
    {11, true, false}, {14, true, true},  {15, true, true},
};

}  // namespace

static const mode_row* ht_mode_of(int radio) {
  const int mode = profile_number(bss_profile(radio), "WirelessMode", kProfileFieldBuffer - 1);
  for (const mode_row& row : kHtModes) {
    if (row.band5 == (radio >= kRadio5) && row.mode == mode) return &row;
  }
  return nullptr;
}

int wlan_getHtSupport(int radio, int* support) {
  *support = ht_mode_of(radio) != nullptr ? 1 : 0;
  REV_TRACE("HT support:%d\n ", *support);
  return 0;
}

int wlan_getVHtSupport(int radio, int* support) {
  const mode_row* row = ht_mode_of(radio);
  *support = row != nullptr && row->vht ? 1 : 0;
  REV_TRACE("VHT support:%d\n ", *support);
  return 0;
}

int wlan_getRadioMaxBitRate(int radio, int* mbit_per_second) {
  int32_t bits_per_second = 0;
  switch (wireless_get_rate(radio, &bits_per_second)) {
    case wireless_result::kNoSocket:
      REV_ERROR("socket failed\n");
      return -1;
    case wireless_result::kRefused:
      REV_ERROR("ioctl failed (cmd=0x%X), index = %d \n", kWirelessGetRate, radio);
      return -1;
    case wireless_result::kDone:
      break;
  }
  *mbit_per_second = bits_per_second / kBitsPerMbit;
  REV_TRACE(" Bit Rate = %d. index = %d\n ", *mbit_per_second, radio);
  return 0;
}
