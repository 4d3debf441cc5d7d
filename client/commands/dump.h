// "wificonf dump": what the gateway tells of itself, in one JSON object.
#pragma once

#include "wire/table.h"

// Whether a dump calls the procedure.
bool dump_is_safe(const procedure_row& procedure);
