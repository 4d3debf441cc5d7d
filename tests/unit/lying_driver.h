#pragma once

#include <cstdint>
#include <string>

// From here on queries of the object do not reach the simulated driver: they are
// answered with these bytes, as far as the caller announced room for them.
void answer_object_with(uint16_t sub, const std::string& bytes);
