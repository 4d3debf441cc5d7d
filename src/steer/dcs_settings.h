#pragma once

// Settings of dynamic channel selection. Each is written to a profile, that of the 2.4
// GHz radio for an index below 9, and sent to the DCS daemon on /var/run/dcsD. The two
// on/off settings start or stop the daemon instead. A profile that cannot be written is
// only traced. 0, also when no daemon listens, or -1 when sending to one fails.

#define DCS_SETTING(operation, key) int operation(int index, int value);
#include "steer/dcs_settings.def"

int dcsSetNoitfyF(int index, const char* key, unsigned value);

// Weights of signal strengths, a text in the daemon's own format.
int wlan_setDCSRSSIWeight(int index, const char* weight);

// Sends sizeof(dcs_message) bytes to the daemon. The index is not used.
int notifyDCSSettingChanges(int index, const void* datagram);
