// "wificonf dump": the answers of all safe getters in one JSON object.
#pragma once

#include "wire/table.h"

bool dump_is_safe(const procedure_row& procedure);
