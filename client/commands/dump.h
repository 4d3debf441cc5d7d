// "wificonf dump": the gateway's whole state in one JSON object.
#pragma once

#include "wire/table.h"

bool dump_is_safe(const procedure_row& procedure);
