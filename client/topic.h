// What a procedure is about, for people who look for one.
#pragma once

#include <span>

#include "table.h"

std::span<const char* const> topics();

// The topic of a procedure, one of topics().
const char* topic_of(const procedure_row& procedure);
