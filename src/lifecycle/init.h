#pragma once

#include <cstdint>

// The worker's sequence for an init (see lifecycle_sequence).
void* init_handler_func(const uint8_t* mask);

// Raises the interfaces, bridges VLANs, sets interrupt affinities, starts the companions
// and allows queries of the driver. Without loaded modules it reports that and does
// nothing. A failed step does not stop it. Returns 1.
int wifi_init();
