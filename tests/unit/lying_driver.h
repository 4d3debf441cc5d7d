#pragma once

#include <cstdint>
#include <string>

// From here on queries of the object do not reach the simulated driver: they are
// answered with these bytes, as far as the caller announced room for them, and
// then fail where an error is given.
void answer_object_with(uint16_t sub, const std::string& bytes, int error = 0);

// The same for the station table.
void answer_stations_with(const std::string& bytes, int error = 0);

// The same for the question for the frequency, mantissa times ten to the
// exponent.
void answer_frequency_with(int32_t mantissa, int16_t exponent);

// From here on the buffer of each query of the object is noted before it goes to
// the driver, with the one byte that the caller has but does not announce.
void watch_queries_of(uint16_t sub);
std::string watched_buffer();
