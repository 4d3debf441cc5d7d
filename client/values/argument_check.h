// Encodes words of the command line as a call.
#pragma once

#include <string>
#include <vector>

#include "wire/table.h"
#include "wire/xdr.h"

// Checks each word against the type of its argument and appends the encoding to `bytes`. False:
// `error` is one line that names the argument, the expected form and the given value; the
// content of `bytes` is undefined.
bool arguments_encode(const procedure_row& procedure, const std::vector<std::string>& given,
                      byte_string& bytes, std::string& error);

// Checks each word against the constraint of its argument, which is narrower than its type: the
// daemon would accept other values but make no sense of them. False: `error` as above. There
// must be as many words as arguments.
bool arguments_check(const procedure_row& procedure, const std::vector<std::string>& given,
                     std::string& error);

// "wificonf wlan_set_ssid BSS SSID"
std::string arguments_usage(const procedure_row& procedure);
