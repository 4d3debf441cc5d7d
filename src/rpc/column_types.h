#pragma once

#include <rpc/rpc.h>

#include "rpc/wlan_config.h"

// Types that the columns of procedures.def name, and the filters of the
// arguments that are no structure.

// A text argument. Its filter refuses a text with a NUL inside, which the back
// end would otherwise see cut short.
using string_t = char*;
bool_t xdr_string_t(XDR* stream, string_t* text);

inline bool_t xdr_bool_t(XDR* stream, bool_t* value) {
  return xdr_bool(stream, value);
}

// What a handler fills, by payload kind.
using result_CODE = wlan_config_return_code_e;
using result_INT = wlan_config_result_data_t;
using result_TEXT = wlan_config_result_data_t;
using result_WORDS = wlan_config_result_data_t;
using result_IMAGE = wlan_config_result_data_t;
using result_NONE = wlan_config_result_data_t;
