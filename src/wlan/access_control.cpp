#include "wlan/access_control.h"

#include <cstdio>
#include <cstdlib>

#include "sys/wext.h"

static int send_text(int bss, const char* text) {
  return rtpriv_set_ioctl(bss, kRtprivText, 0, text) == 1 ? 0 : -1;
}

// Sends the whole text, however long: the driver rejects what is not an address.
static int send_address(int bss, const char* command, const char* mac_address) {
  char* text = nullptr;
  if (asprintf(&text, "%s=%s", command, mac_address) < 0) return -1;
  const int status = send_text(bss, text);
  free(text);
  return status;
}

int wlan_setMacAddressControlEnabled(int bss, int policy) {
  char text[32];
  snprintf(text, sizeof text, "AccessPolicy=%d", policy);
  return send_text(bss, text);
}

int wlan_setMacAddressControlAdd(int bss, const char* mac_address, const char* /*name*/) {
  return send_address(bss, "ACLAddEntry", mac_address);
}

int wlan_setMacAddressControlDelete(int bss, const char* mac_address) {
  return send_address(bss, "ACLDelEntry", mac_address);
}

int wlan_setMacAddressControlClear(int bss) {
  return send_text(bss, "ACLClearAll=1");
}
