// Results as aligned text.
#pragma once

#include <string>
#include <string_view>

#include "values/payload.h"

// The value of a procedure with an INT payload; "-" if unknown.
std::string show_number(const procedure_row& procedure, int32_t value);

// One value without its unit, safe on a terminal. "-" if unknown, or for an invalid rate.
std::string show_value(const payload_field& field, std::string_view record);

// The same in a table: rates are in Mbit/s, and a BSS's position within its radio is shown as
// its BSS number. `first_bss` is the number of the radio's first BSS.
std::string show_cell(const payload_field& field, std::string_view record, int first_bss = 1);

struct earlier_record {
  std::string_view record;
  double seconds;  // ago
};

struct show_settings {
  size_t width = 0;   // columns of the terminal, where long texts are cut; 0: none
  int first_bss = 1;  // number of the first BSS of the radio that was asked
  const earlier_record* earlier = nullptr;
};

// A record with a layout: one line per field, then a table of its rows. With an earlier record,
// counters also show their growth per second. Rows are matched by MAC address.
std::string show_record(const payload_layout& layout, std::string_view record,
                        const show_settings& settings);

// The same as "name=value" lines for programs, each beginning with `start`: one for the fields,
// one for each row, or one that says that there are no rows. A quote in a text becomes \x22.
std::string show_lines(const payload_layout& layout, std::string_view record,
                       const std::string& start, const show_settings& settings);
