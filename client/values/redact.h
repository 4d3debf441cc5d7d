// Makes a dump fit to be handed on: of what the gateway tells only that is kept as it is
// which the layouts say to be free.
#pragma once

#include <map>
#include <nlohmann/json.hpp>

#include "wire/table.h"

// What goes on from answer to answer.
struct redaction {
  // What stands for each address and name, the same wherever it occurs.
  std::map<std::string, std::string> macs, ipv4s, ipv6s, names;
  size_t left_out = 0;  // values that nobody has classified
};

// Of an answer as json_result() has it: secrets become "(redacted)", addresses and names
// are replaced, unclassified values are left out. Empty texts and null stay.
void redact(const procedure_row& procedure, nlohmann::ordered_json& answer, redaction& state);
