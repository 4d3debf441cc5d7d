#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The procedures and their members, expanded from the table, so that a new procedure is
// tested without a change here. A member of a new type does not compile until rows.cpp
// handles it.

enum class member_kind {
  kNumber,
  kText,
  kRecord,  // the row of an extender model: texts of a fixed size and numbers
};

struct row {
  uint32_t number;
  std::string name;
  std::vector<member_kind> members;
};

const std::vector<row>& all_rows();

// Whether the procedure loads the driver or takes radios down or up. Call these last.
[[nodiscard]] bool moves_radios(const row& procedure);

// Encoded arguments: numbers are `number`, or 1, and texts are "x", except for the member
// at `place`.
std::string arguments(const row& procedure, uint32_t number = 1);
std::string arguments_with(const row& procedure, size_t place, const std::string& text);
std::string arguments_with(const row& procedure, size_t place, uint32_t number);
