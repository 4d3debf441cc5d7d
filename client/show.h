// Results as aligned text.
#pragma once

#include <string>
#include <string_view>

#include "payload.h"

// One value without its unit, safe on a terminal. "-" for a rate or time that
// is none.
std::string show_value(const payload_field& field, std::string_view record);

// The same in a table, where rates are in Mbit/s.
std::string show_cell(const payload_field& field, std::string_view record);

// The same record some time before.
struct earlier_record {
  std::string_view record;
  double seconds;  // ago
};

// The record of a procedure with a layout: its fields one a line, then a table
// of its rows. `width`: columns of the terminal, where long texts are cut; 0
// for none. With an earlier record counters have their growth per second
// beside them; rows are told apart by their MAC addresses.
std::string show_record(const payload_layout& layout, std::string_view record, size_t width,
                        const earlier_record* earlier = nullptr);

// The same in lines of "name=value" for programs, each beginning with `start`:
// one for the fields, one for each row, or one that says that there are none.
// A quote in a text is \x22 there.
std::string show_lines(const payload_layout& layout, std::string_view record,
                       const std::string& start, const earlier_record* earlier);
