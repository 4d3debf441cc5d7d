#include "wlan/led.h"

#include "diag/trace.h"
#include "sys/board.h"
#include "sys/wext.h"

int Set_LedEnableByIndex(int enable, int bss_index) {
  return rtpriv_set_ioctl(bss_index, kRtprivText, 0, enable != 0 ? "LEDEnable=1" : "LEDEnable=0");
}

int wlan_setLedEnable(int enable) {
  int status = 0;
  if (Set_LedEnableByIndex(enable, kRadio24) != 1) {
    REV_ERROR("wlan_setLedEnable WIFI24 ioctl failed \n");
    status = -1;
  }
  if (Set_LedEnableByIndex(enable, kRadio5) != 1) {
    REV_ERROR("wlan_setLedEnable WIFI50 ioctl failed \n");
    status = -1;
  }
  return status;
}
