#pragma once

#include <rpc/rpc.h>

#include "rpc/wlan_config.h"

// Types named in the columns of procedures.def, and the filters of arguments that are not
// structures.

using string_t = char*;

// Refuses a text with an embedded NUL, which would be truncated for the back end.
bool_t xdr_string_t(XDR* stream, string_t* text);

inline bool_t xdr_bool_t(XDR* stream, bool_t* value) {
  return xdr_bool(stream, value);
}
