#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The procedures with their members, expanded from the table, so that one that is
// added is tested without a word here. A member of a type that is new does not
// compile until rows.cpp knows it.

enum class member_kind {
  number,
  text,
  record,  // the row of an extender model: texts of a fixed size, and numbers
};

struct row {
  uint32_t number;
  std::string name;
  std::vector<member_kind> members;
};

const std::vector<row>& all_rows();

// Whether the procedure loads the driver or takes radios down or up: to be called
// after all others.
[[nodiscard]] bool moves_radios(const row& procedure);

// Bytes of arguments: numbers are `number`, texts are "x", but for the member at
// `place`, which is the text or the other number.
std::string arguments(const row& procedure, uint32_t number = 1);
std::string arguments_with(const row& procedure, size_t place, const std::string& text);
std::string arguments_with(const row& procedure, size_t place, uint32_t number);
