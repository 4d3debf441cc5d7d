// What the box does for its scenario besides answering requests: it lets time pass, tells the
// companions what is in force and leaves the files that the hardware leaves.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

// Writes the scenario and the clock in force to kScenarioPath and kClockPath, each atomically.
// Reports what failed.
[[nodiscard]] bool around_publish(const driver_state& state);

// Brings the model up to now, does what its events ask for, and publishes when one of them changed
// the scenario.
void around_go_on(trap_state& trap);

// Moves the box's time on by that much; what is due by then happens.
void around_advance(trap_state& trap, int64_t us);

// Stops the box's time or lets it go on.
void around_pause(trap_state& trap, bool paused);

// The words after `gwbox fail`, but for "list": a failure to be set, or "clear", which also ends
// the delays under way. False with what is WRONG.
[[nodiscard]] bool around_fail(trap_state& trap, const std::vector<std::string>& words,
                               std::string& wrong);

// Writes the files that the hardware left.
void around_write_files(driver_state& state);

// Milliseconds until something happens by itself, -1: nothing will.
int around_timeout_ms(const driver_state& state);
