#pragma once

#include <cstdint>
#include <string>

// From now on queries of the object do not reach the simulated driver. Their answer is
// `bytes`, as far as the caller's announced length allows, and then `error` if it is not
// 0.
void answer_object_with(uint16_t sub, const std::string& bytes, int error = 0);

// The same for queries of the station table.
void answer_stations_with(const std::string& bytes, int error = 0);

// The same for queries of the frequency: mantissa times ten to the exponent.
void answer_frequency_with(int32_t mantissa, int16_t exponent);

// From now on keeps the buffer of each query of the object as it was before the driver
// saw it, with the one byte that the caller has but does not announce.
void watch_queries_of(uint16_t sub);
std::string watched_buffer();
