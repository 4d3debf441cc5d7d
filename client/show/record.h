// Results as aligned text.
#pragma once

#include <string>
#include <string_view>

#include "values/payload.h"

// The value of a procedure with an INT payload; "-" when it is not known.
std::string show_number(const procedure_row& procedure, int32_t value);

// One value without its unit, safe on a terminal. "-" when it is not known, and for
// a rate that is none.
std::string show_value(const payload_field& field, std::string_view record);

// The same in a table, where rates are in Mbit/s, and a BSS's position within its radio,
// whose first is `first_bss`, is the number of the BSS.
std::string show_cell(const payload_field& field, std::string_view record, int first_bss = 1);

// The same record some time before.
struct earlier_record {
  std::string_view record;
  double seconds;  // ago
};

struct show_settings {
  size_t width = 0;   // columns of the terminal, where long texts are cut; 0: none
  int first_bss = 1;  // of the radio that was asked, from which people count
  const earlier_record* earlier = nullptr;
};

// The record of a procedure with a layout: its fields one a line, then a table
// of its rows. With an earlier record counters have their growth per second
// beside them; rows are told apart by their MAC addresses.
std::string show_record(const payload_layout& layout, std::string_view record,
                        const show_settings& settings);

// The same in lines of "name=value" for programs, each beginning with `start`:
// one for the fields, one for each row, or one that says that there are none.
// A quote in a text is \x22 there.
std::string show_lines(const payload_layout& layout, std::string_view record,
                       const std::string& start, const show_settings& settings);
