// Time: the steady clock for durations, the calendar for people.
#pragma once

#include <cstdint>
#include <string>

// Seconds of the steady clock.
double moment_now();

void moment_sleep_until(double moment);

// `every` seconds after `moment`, or now when that is over: what was late is not
// made up for.
double moment_next(double moment, double every);

// "2026-01-31T12:00:00Z", of now.
std::string moment_stamp();

// "2026-01-31 12:00:00Z" of seconds since the epoch; "-" of none.
std::string moment_text(uint64_t seconds);
