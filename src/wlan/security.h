#pragma once

// Security settings of one BSS, fields of its profile's lists; they take effect after a
// restart. Modes come in the management stack's names and are written in the driver's. An
// unknown mode is not refused but empties the field: kept on purpose. Each operation
// returns the result of the update: 1 written, 2 unchanged, 0 failed. The mode setters
// report an index outside 1 to 16 and return 0.

// Key "EncrypType": "None", else empty.
int wlan_setBasicEncryptionModes(int bss, const char* modes);

// Key "AuthMode": "None", else empty. When the text contains "None", the host of a
// backhaul BSS gets it (see wlan/bss_service.h).
int wlan_setBasicAuthenticationModes(int bss, const char* modes);

// Key "EncrypType": "None", "AESEncryption", "TKIPEncryption" or
// "TKIPandAESEncryption".
int wlan_setWpaEncryptionModes(int bss, const char* modes);

// Key "AuthMode": "WPAPSK", "WPA2PSK", "WPA", "WPA2", "WPAPSKWPA2PSK" or "WPA1WPA2". The
// host of a backhaul BSS gets the text unchanged, whatever the index.
int wlan_setWpaBasicAuthenticationModes(int bss, const char* modes);

// Key "RADIUS_Server". The index is not checked.
int wlan_setRadiusServerAddress(int bss, const char* address);
