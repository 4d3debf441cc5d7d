// Why a command has no result.
#pragma once

#include <string>

#include "base/exit_status.h"

struct failure_report {
  exit_status status = kExitDone;
  const char* kind = "";  // one word, for programs
  std::string line;       // for people; "": there is a result
  bool given_up = false;  // by the user
};
