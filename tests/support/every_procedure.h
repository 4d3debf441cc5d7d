#pragma once

#include <functional>
#include <string>
#include <vector>

// A call of every procedure, with the example of its description.

struct procedure_call {
  std::string name;
  std::string answer;  // one line of JSON; empty when none came
};

// Brings a gateway without a driver up, calls `ready`, and then every procedure
// through wificonf: all but those that take the radios down first, these last.
// Fails the test when a procedure does not answer.
std::vector<procedure_call> call_every_procedure(const std::function<void()>& ready = [] {});

// The member of the one-line JSON object, a text without its quotes; empty when
// it has none.
std::string json_member(const std::string& line, const std::string& name);
