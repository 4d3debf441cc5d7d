// What the box does for its scenario besides answering requests: it lets time pass, tells the
// companions what is in force and leaves the files that the hardware leaves.
#pragma once

#include "driver.h"

// Writes the scenario in force to kScenarioPath, atomically. Reports what failed.
[[nodiscard]] bool around_publish(const scenario& s);

// Brings the model up to now, and publishes when an event changed the scenario.
void around_go_on(driver_state& state);

// Writes the files that the hardware left.
void around_write_files(driver_state& state);

// Milliseconds until something happens by itself, -1: nothing will.
int around_timeout_ms(const driver_state& state);
