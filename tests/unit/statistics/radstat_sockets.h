#pragma once

#include <string>

// Where the statistics daemon of each radio listens.
inline const std::string kRa0 = "/var/run/radstat/ra0";
inline const std::string kRa8 = "/var/run/radstat/ra8";
