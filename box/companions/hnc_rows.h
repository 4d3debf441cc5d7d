// Rows of the controller's tables from the scenario.
#pragma once

#include <nlohmann/json.hpp>

#include "hnc_wire.h"

// INDEX: of a row that names none.
hnc_extender hnc_extender_row(const nlohmann::json& data, uint32_t index);
hnc_supported hnc_supported_row(const nlohmann::json& data, uint32_t index);
