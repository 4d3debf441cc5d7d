#pragma once

#include <cstddef>

// Wi-Fi Protected Setup, which the driver runs. A session starts only while the
// profile switches on the radio ("RadioOn"), the BSS ("BssEnabled") and its WPS
// ("WscEnable"), and "WscConfMethods", a hexadecimal bit mask per BSS, permits
// the method. What is switched off, an index without a BSS included, is nothing
// to do: 0.

// Starts a push-button session. 0, also when there is nothing to do; -1 when the
// method is not permitted, which is reported.
int wlan_setWpsPbcTrigger(int bss);
int wlan_setWpsPushButton(int bss);

// The same with the PIN of the station, passed on unchecked. PIN sessions are
// permitted by the label or the display bit.
int wlan_setWpsPinStart(int bss, const char* pin);

// Makes the BSS unconfigured, as it came out of its box; nothing where its WPS is
// off. Returns 0.
int wlan_setWpsOOB(int bss);

// Ends the session; nothing where the BSS's WPS is off. Returns 0.
int wlan_setWpsCancel(int bss);

// The driver's UUID text, at most kWpsUuidSize bytes with its NUL; empty when the
// driver does not tell. Returns 0.
constexpr size_t kWpsUuidSize = 121;
int wlan_getWpsUuid(int bss, char (&uuid)[kWpsUuidSize]);

// How the session of a radio (1 or 9) stands, a text of at most
// kWpsResultStatusSize bytes with its NUL. Returns 0, or -1 for any other index.
constexpr size_t kWpsResultStatusSize = 17;
int wlan_getWpsResultStatus(int radio, char (&status)[kWpsResultStatusSize]);
