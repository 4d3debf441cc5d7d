// Finds one procedure: by name, by number, or the one that was probably meant.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "wire/table.h"

// Ignores case and takes dashes for underscores; no abbreviations. nullptr if there is none.
const procedure_row* lookup_name(std::string_view name);
const procedure_row* lookup_number(uint32_t number);

// By name or number; nullptr if it is neither.
const procedure_row* lookup_procedure(std::string_view text);

// Whether a text is meant as a number: it begins with a digit.
bool lookup_is_number(std::string_view text);

// Decimal, or hexadecimal after 0x; false if it is not a 32-bit number.
bool lookup_parse_number(std::string_view text, uint32_t* number);

// Up to three names, of procedures or from `others`, that `name` may have been meant as:
// closest first, but procedures that do nothing last. Empty if nothing is close.
std::vector<std::string> lookup_near(std::string_view name,
                                     std::span<const char* const> others = {});

// Edits (insert, delete, replace one character) from one text to the other.
size_t lookup_distance(std::string_view a, std::string_view b);

// A name as in the table: upper case, underscores for dashes.
std::string lookup_fold(std::string_view name);

std::string lookup_display_name(const procedure_row& procedure);

// Decimal below 0x1000, hexadecimal above, in the range of the extensions.
std::string lookup_display_number(uint32_t number);
