#pragma once

// Names of the columns of procedures.def for types of the wire contract, which
// the includer has declared, with or without the program.

// A text argument.
using string_t = char*;

// What a handler fills, by payload kind.
using result_CODE = wlan_config_return_code_e;
using result_INT = wlan_config_result_data_t;
using result_TEXT = wlan_config_result_data_t;
using result_WORDS = wlan_config_result_data_t;
using result_IMAGE = wlan_config_result_data_t;
using result_NONE = wlan_config_result_data_t;
