#pragma once

// The sequences that bring the radios up, cycle one of them and take them down. Without
// loaded modules they report that and do nothing. A failed step does not stop them. All
// return 1.

// Raises the interfaces, bridges VLANs, sets interrupt affinities, starts the companions
// and allows queries of the driver.
int wifi_init();

// Cycles the interfaces of radio 1 or 9 with its companions stopped.
int wifi_restart(int radio);

// Stops the companions, takes the interfaces down and unloads the modules.
int wifi_reset();

// Notifies the home network controller that Wi-Fi is up again, or going down. Returns
// cfg_executecmd's result.
int notify_hnc(int up);
