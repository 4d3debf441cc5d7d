// What the box does for its scenario besides answering requests: it lets time pass, publishes the
// scenario and the clock for the companions and writes the files that the hardware would leave.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

// Writes the current scenario and clock to kScenarioPath and kClockPath, each atomically. Reports
// what failed.
[[nodiscard]] bool around_publish(const driver_state& state);

// Brings the model up to now, carries out what its events ask for, and publishes the scenario if
// one of them changed it.
void around_go_on(trap_state& trap);

// Advances the box's time by US microseconds; everything due by then happens.
void around_advance(trap_state& trap, int64_t us);

// Stops the box's time or lets it run again.
void around_pause(trap_state& trap, bool paused);

// WORDS after `gwbox fail`, except "list": a failure to set, or "clear", which also ends the delays
// under way. False with the reason in WRONG.
[[nodiscard]] bool around_fail(trap_state& trap, const std::vector<std::string>& words,
                               std::string& wrong);

// Writes the files that the model asks for, and empties its list of them.
void around_write_files(driver_state& state);

// Milliseconds until the model's next event; -1: none will come.
int around_timeout_ms(const driver_state& state);
