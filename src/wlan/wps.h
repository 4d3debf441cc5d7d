#pragma once

#include <cstddef>

// Wi-Fi Protected Setup, which the driver runs. A session starts only while the profile
// enables the radio ("RadioOn"), the BSS ("BssEnabled") and its WPS ("WscEnable"), and
// "WscConfMethods", a hexadecimal bit mask per BSS, permits the method. If something is
// disabled, or the index has no BSS, there is nothing to do: 0.

// Starts a push-button session. 0, also when there is nothing to do; -1, reported, when
// the method is not permitted.
int wlan_setWpsPbcTrigger(int bss);
int wlan_setWpsPushButton(int bss);

// The same with the station's PIN, passed on unchecked. The label or the display bit
// permits PIN sessions.
int wlan_setWpsPinStart(int bss, const char* pin);

// Resets the BSS's WPS to the unconfigured factory state; does nothing when its WPS is
// off. Returns 0.
int wlan_setWpsOOB(int bss);

// Ends the session; does nothing when the BSS's WPS is off. Returns 0.
int wlan_setWpsCancel(int bss);

// The driver's UUID text, at most kWpsUuidSize bytes with its NUL; empty when the driver
// does not answer. Returns 0.
constexpr size_t kWpsUuidSize = 121;
int wlan_getWpsUuid(int bss, char (&uuid)[kWpsUuidSize]);

// The state of a radio's (1 or 9) session, a text of at most kWpsResultStatusSize bytes
// with its NUL. Returns 0, or -1 for any other index.
constexpr size_t kWpsResultStatusSize = 17;
int wlan_getWpsResultStatus(int radio, char (&status)[kWpsResultStatusSize]);
