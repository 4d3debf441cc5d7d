#pragma once

// Settings of dynamic channel selection. Each is written to a profile, that of
// the 2.4 GHz radio for an index below 9, and told to the DCS daemon on
// /var/run/dcsD; the two on/off settings start or stop the daemon instead. A
// profile that cannot be written is traced only. 0, also when no daemon
// listens, or -1 when it does and could not be told.

#define DCS_SETTING(operation, key) int operation(int index, int value);
#include "steer/dcs_settings.def"

// What they share.
int dcsSetNoitfyF(int index, const char* key, unsigned value);

// Weights of signal strengths, a text of the daemon's own.
int wlan_setDCSRSSIWeight(int index, const char* weight);

// Sends the daemon sizeof(dcs_message) bytes. The index is not used.
int notifyDCSSettingChanges(int index, const void* datagram);
