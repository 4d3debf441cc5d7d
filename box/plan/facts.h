// From the journal to a plan.
#pragma once

#include <string>

#include "plan/record.h"

// Adds what the lines tell: JSON objects, one per line.
void facts_add(plan& p, const std::string& lines);

// Marks the settings that only a restart brings on air. PENDING: as pending_json gives it.
void facts_mark_pending(plan& p, const std::string& pending);
