#pragma once

#include <rpc/types.h>

// The inert operations, declared from inert.def.

#define INERT_OPERATION(status, operation, parameters) int operation parameters;
#include "wlan/inert.def"
