#pragma once

// Prepares calibration images and power tables, inserts the board's driver modules and
// marks them loaded. Module failures are reported and otherwise ignored. Returns 1.
int wifi_load();
