// The list of a BSS's stations, which "wificonf top" shows of all BSSs.
#pragma once

#include "values/payload.h"

inline constexpr int kBssMax = 16;  // BSSs have the numbers 1 to 16

// The procedure that is asked, and the rows of its answer: one for each station.
const procedure_row& stations_procedure();
const payload_rows& stations_rows();

// A field of the rows, which has to be there.
const payload_field& stations_field(std::string_view name);
