#pragma once

// Raises the radios' interfaces and takes them down.

// Raises the interfaces of the enabled BSSs of radio 1 or 9. If the profile disables the
// radio, all stay down. Returns the last value read, which is 1 when the last step raised
// an interface.
int wifi_interfacesUp(int radio);

// Takes all eight interfaces of a radio down, whatever the profile says.
void wifi_interfacesDown(int radio);
