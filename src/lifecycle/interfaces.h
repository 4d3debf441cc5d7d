#pragma once

// The radios' interfaces.

// Raises the interfaces of the enabled BSSs of radio 1 or 9. A radio that the
// profile switches off keeps them all down. Returns the last value read, which
// is 1 when the last step raised an interface.
int wifi_interfacesUp(int radio);

// Takes all eight interfaces of a radio down, whatever the profile says.
void wifi_interfacesDown(int radio);
