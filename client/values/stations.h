// The station list of a BSS, which "wificonf top" reads for all BSSs.
#pragma once

#include "values/payload.h"

inline constexpr int kBssMax = 16;  // BSSs are numbered 1 to 16

// The procedure to call. Each row of its answer is a station.
const procedure_row& stations_procedure();
const payload_rows& stations_rows();

// A field of the rows. It must exist.
const payload_field& stations_field(std::string_view name);
