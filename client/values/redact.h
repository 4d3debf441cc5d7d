// Makes a dump safe to share: only values that the layouts mark as free are kept unchanged.
#pragma once

#include <map>
#include <nlohmann/json.hpp>

#include "wire/table.h"

struct redaction {
  // The replacement of each address and name, the same wherever it occurs.
  std::map<std::string, std::string> macs, ipv4s, ipv6s, names;
  size_t left_out = 0;  // values that are not classified
};

// Redacts an answer of json_result(). Secrets become "(redacted)", addresses and names are
// replaced, unclassified values are left out. Empty texts and null stay.
void redact(const procedure_row& procedure, nlohmann::ordered_json& answer, redaction& state);
