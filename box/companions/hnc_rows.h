// Rows of the controller's tables from the scenario.
#pragma once

#include <cstring>

#include <nlohmann/json.hpp>
#include <string>

#include "companions/hnc_wire.h"

// A text that fills the field has no terminator.
template <size_t SIZE>
void hnc_put(char (&field)[SIZE], const std::string& text) {
  memset(field, 0, SIZE);
  memcpy(field, text.data(), text.size() < SIZE ? text.size() : SIZE);
}

// INDEX is for rows that do not give one.
hnc_extender hnc_extender_row(const nlohmann::json& data, uint32_t index);
hnc_supported hnc_supported_row(const nlohmann::json& data, uint32_t index);
