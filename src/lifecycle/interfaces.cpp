#include "lifecycle/interfaces.h"

#include <net/if.h>

#include <cstdio>

#include "profile/values.h"
#include "sys/board.h"
#include "sys/netdev.h"

static constexpr int kBssPerRadio = 8;
static constexpr int kUpFlags = IFF_UP | IFF_RUNNING | IFF_MULTICAST;
static_assert(kUpFlags == 0x1041);

static int first_bss(int radio) {
  return radio == kRadio24 ? kRadio24 : kRadio5;
}

static unsigned set_interface(int bss, int flags, int up) {
  char name[16];
  snprintf(name, sizeof name, "%s%d", "ra", bss - 1);
  return if_ioctl(name, nullptr, nullptr, flags, up);
}

int wifi_interfacesUp(int radio) {
  int value = profile_number(bss_profile(radio), "RadioOn", kSwitchLimit);
  if (value != 1) return value;
  const int first = first_bss(radio);
  for (int bss = first; bss < first + kBssPerRadio; ++bss) {
    value = bss_number(bss, "BssEnabled", kSwitchLimit);
    if (value == 1) value = static_cast<int>(set_interface(bss, kUpFlags, 1));
  }
  return value;
}

void wifi_interfacesDown(int radio) {
  const int first = first_bss(radio);
  for (int bss = first; bss < first + kBssPerRadio; ++bss)
    set_interface(bss, IFF_MULTICAST, 0);
}
