#pragma once

#include <rpc/rpc.h>

#include "rpc/wlan_config.h"
// After the types that it names.
#include "rpc/column_aliases.h"

// Types that the columns of procedures.def name, and the filters of the
// arguments that are no structure.

// Refuses a text with a NUL inside, which the back end would otherwise see cut
// short.
bool_t xdr_string_t(XDR* stream, string_t* text);

inline bool_t xdr_bool_t(XDR* stream, bool_t* value) {
  return xdr_bool(stream, value);
}
