// From words of the command line to the bytes of a call.
#pragma once

#include <string>
#include <vector>

#include "wire/table.h"
#include "wire/xdr.h"

// Checks every word by the type of its argument and appends the encoding to
// `bytes`. False: `error` is one line that names the argument, the form that
// is expected and what was given; bytes is then without meaning.
bool arguments_encode(const procedure_row& procedure, const std::vector<std::string>& given,
                      byte_string& bytes, std::string& error);

// Checks every word by the constraint of its argument, which is narrower than its type:
// what the daemon takes and does not make sense of. False: `error` as above. The count
// of the words is that of the arguments.
bool arguments_check(const procedure_row& procedure, const std::vector<std::string>& given,
                     std::string& error);

// "wificonf wlan_set_ssid BSS SSID"
std::string arguments_usage(const procedure_row& procedure);
