#pragma once

#include <rpc/rpc.h>

#include "rpc/wlan_config.h"

// Types that the columns of procedures.def name, and the filters of the
// arguments that are no structure.

// A text argument.
using string_t = char*;

// Refuses a text with a NUL inside, which the back end would otherwise see cut
// short.
bool_t xdr_string_t(XDR* stream, string_t* text);

inline bool_t xdr_bool_t(XDR* stream, bool_t* value) {
  return xdr_bool(stream, value);
}
