// The state of a box: what its radios beacon, which stations are there, what runs.
#pragma once

#include <string>

#include "gateway/state.h"

// Server side: the whole as a JSON object.
std::string status_json(const trap_state& trap);

// `gwbox status`. BOX as for reach_root; AS_JSON: as it comes, else tables of 80 columns. Returns
// the exit status.
int status_print(const std::string& box, bool as_json);

// The tables for that object.
std::string status_tables(const std::string& json);
