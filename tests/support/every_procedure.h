#pragma once

#include <functional>
#include <string>
#include <vector>

// Calls every procedure with the example from its description.

struct procedure_call {
  std::string name;
  std::string answer;  // one line of JSON; empty if there was none
};

// Brings up a gateway without a driver, calls `ready`, then calls every procedure through
// wificonf. Those that take the radios down come last. Fails the test if a procedure does not
// answer.
std::vector<procedure_call> call_every_procedure(const std::function<void()>& ready = [] {});

// A member of the one-line JSON object, texts without their quotes; empty if missing.
std::string json_member(const std::string& line, const std::string& name);
