#pragma once

#include <cstdint>

// The worker's sequence for a load (see lifecycle_sequence).
void* load_handler_func(const uint8_t* mask);

// Prepares calibration images and power tables, inserts the board's driver modules and
// marks them loaded. Module failures are reported and otherwise ignored. Returns 1.
int wifi_load();
