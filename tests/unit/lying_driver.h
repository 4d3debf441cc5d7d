#pragma once

#include <cstdint>
#include <string>

// From here on queries of the object do not reach the simulated driver: they are
// answered with these bytes, as far as the caller announced room for them, and
// then fail where an error is given.
void answer_object_with(uint16_t sub, const std::string& bytes, int error = 0);

// The same for the question for the frequency, mantissa times ten to the
// exponent.
void answer_frequency_with(int32_t mantissa, int16_t exponent);
