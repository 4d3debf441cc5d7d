// Results as aligned text.
#pragma once

#include <string>
#include <string_view>

#include "payload.h"

// One value without its unit, safe on a terminal. "-" for a rate or time that
// is none.
std::string show_value(const payload_field& field, std::string_view record);

// The record of a procedure with a layout: its fields one a line, then a table
// of its rows. `width`: columns of the terminal, where long texts are cut; 0
// for none.
std::string show_record(const payload_layout& layout, std::string_view record, size_t width);
