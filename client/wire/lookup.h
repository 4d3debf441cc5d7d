// Finding one procedure: by name, by number, by what was probably meant.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "wire/table.h"

// Upper or lower case, dashes for underscores; no abbreviations. nullptr when
// there is none.
const procedure_row* lookup_name(std::string_view name);
const procedure_row* lookup_number(uint32_t number);

// Name or number; nullptr when it is neither.
const procedure_row* lookup_procedure(std::string_view text);

// True for a text that is meant as a number: it begins with a digit.
bool lookup_is_number(std::string_view text);

// Decimal, or hexadecimal after 0x; false when it is no number of 32 bits.
bool lookup_parse_number(std::string_view text, uint32_t* number);

// Up to three names, of procedures or of `others`, that `name` may have been meant as: those
// that do something, then those that do nothing, each the nearest first; empty when nothing
// is near.
std::vector<std::string> lookup_near(std::string_view name,
                                     std::span<const char* const> others = {});

// Edits (insert, delete, replace one character) from one text to the other.
size_t lookup_distance(std::string_view a, std::string_view b);

// A name as the table has it: upper case, underscores for dashes.
std::string lookup_fold(std::string_view name);

// As people write it: lower case.
std::string lookup_display_name(const procedure_row& procedure);

// Decimal below 0x1000, hexadecimal in the range of the extensions.
std::string lookup_display_number(uint32_t number);
