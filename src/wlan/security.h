#pragma once

// Security of one BSS, fields of its profile's lists; on air after a restart.
// Modes are named as the management stack names them and written as the driver
// names them. A mode that is not known is not refused: it empties the field,
// kept on purpose. Each operation returns the result of the update: 1 written, 2
// in place already, 0 failed. The mode setters report an index outside 1 to 16
// and answer 0.

// Key "EncrypType": "None", else empty.
int wlan_setBasicEncryptionModes(int bss, const char* modes);

// Key "AuthMode": "None", else empty. The host of a backhaul BSS is told "None"
// (see wlan/bss_service.h) when the text contains it.
int wlan_setBasicAuthenticationModes(int bss, const char* modes);

// Key "EncrypType": "None", "AESEncryption", "TKIPEncryption" or
// "TKIPandAESEncryption".
int wlan_setWpaEncryptionModes(int bss, const char* modes);

// Key "AuthMode": "WPAPSK", "WPA2PSK", "WPA", "WPA2", "WPAPSKWPA2PSK" or
// "WPA1WPA2". The host of a backhaul BSS is told the text as it came, whatever
// the index.
int wlan_setWpaBasicAuthenticationModes(int bss, const char* modes);

// Key "RADIUS_Server". The index is not checked.
int wlan_setRadiusServerAddress(int bss, const char* address);
