// The whole program, without the process around it.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

enum exit_status {
  kExitDone = 0,
  kExitFailureCode = 1,  // the daemon answered a failure code
  kExitUsage = 2,
  kExitNoAnswer = 3,  // no answer, an RPC error, or output that cannot be written
  kExitNotReady = 4,  // there is no result yet: try again
  kExitInert = 5,     // accepted, does nothing
};

// `arguments` without the program's name. Results go to `out`, each failure as
// one line to `err` (wrong arguments have the usage line besides).
exit_status run(const std::vector<std::string>& arguments, FILE* out, FILE* err);
