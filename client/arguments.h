// From words of the command line to the bytes of a call.
#pragma once

#include <string>
#include <vector>

#include "table.h"
#include "wire.h"

// Checks every word by the type of its argument and appends the encoding to
// `bytes`. False: `error` is one line that names the argument, the form that
// is expected and what was given; bytes is then without meaning.
bool arguments_encode(const procedure_row& procedure, const std::vector<std::string>& given,
                      byte_string& bytes, std::string& error);

// What a caller may write, for example "integer (decimal or 0x...)".
std::string arguments_form(const argument_spec& argument);

// "wificonf wlan_set_ssid BSS SSID"
std::string arguments_usage(const procedure_row& procedure);
