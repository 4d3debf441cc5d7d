#include "wlan/survey.h"

#include "diag/trace.h"
#include "sys/wireless.h"

int wlan_getCurrentChannel(int bss, int* channel) {
  wireless_frequency frequency = {};
  switch (wireless_get_frequency(bss, &frequency)) {
    case wireless_result::no_socket:
      // Answered as a success: kept on purpose.
      REV_ERROR("socket failed\n");
      return 0;
    case wireless_result::refused:
      REV_ERROR("wlan_getCurrentChannel ioctl failed \n");
      return -1;
    case wireless_result::done:
      break;
  }
  long double value = frequency.mantissa;
  // Beyond this no exponent leaves a number that fits.
  for (int i = 0; i < frequency.exponent && value <= 1e9L && value >= -1e9L; ++i)
    value *= 10;
  *channel = value <= 2147483647.0L && value >= -2147483648.0L ? static_cast<int>(value) : 0;
  return 0;
}
