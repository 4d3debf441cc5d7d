#pragma once

#include <rpc/types.h>

#define INERT_OPERATION(status, operation, parameters) int operation parameters;
#include "wlan/inert.def"
