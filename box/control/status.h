// The state of a box: what its radios beacon, which stations are there, which companions run.
#pragma once

#include <string>

#include "gateway/state.h"

// The box's side: the whole state as a JSON object.
std::string status_json(const trap_state& trap);

// `gwbox status`. BOX as for reach_root; AS_JSON: the object as it is, else tables 80 columns wide.
// Returns the exit status.
int status_print(const std::string& box, bool as_json);

// The tables for that object.
std::string status_tables(const std::string& json);
