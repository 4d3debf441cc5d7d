// Time: the steady clock for durations, the calendar for people.
#pragma once

#include <cstdint>
#include <string>

// Seconds of the steady clock.
double moment_now();

void moment_sleep_until(double moment);

// `every` seconds after `moment`, or now if that has passed: missed times are not made up.
double moment_next(double moment, double every);

// The current time as "2026-01-31T12:00:00Z".
std::string moment_stamp();

// "2026-01-31 12:00:00Z" from seconds since the epoch; "-" for 0.
std::string moment_text(uint64_t seconds);
