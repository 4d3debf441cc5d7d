#pragma once

// Prepares calibration images and power tables, inserts the driver modules of
// the board and marks them loaded. Module failures are reported and do not stop
// it. Returns 1.
int wifi_load();
