#pragma once

#include <cstdint>

// Stops the companions, takes the interfaces down and unloads the modules. Without loaded
// modules it reports that and does nothing. A failed step does not stop it. Returns 1.
int wifi_reset();

// Records the state after a reset: nothing loaded, no reset running. In a turn only.
void forget_drivers();

// The worker's sequence for a queued reset (see lifecycle_sequence). Unlike wlan_reset it
// does not stop when an init or a restart runs. No operation queues it, since wlan_reset
// runs at once.
void* reset_handler_func(const uint8_t* mask);
