// `gwbox plan`, inside the box: brings the gateway up, runs the command, and prints what it did.
#pragma once

#include <string>
#include <vector>

constexpr int kExitOutage = 10;   // the command took the air from somebody
constexpr int kExitCommand = 11;  // the command failed

enum class plan_form { kText, kJson, kHtml };

struct rehearsal {
  std::vector<std::string> command;
  plan_form form;
  bool allow_outage;  // exits with 0 instead of kExitOutage
  int profile_24;     // descriptors to read profiles from; -1: those of the box
  int profile_5;
};

// Returns the exit status of the plan.
int rehearse(const rehearsal& r);
