// What the program exits with.
#pragma once

enum exit_status {
  kExitDone = 0,
  kExitFailureCode = 1,  // the daemon answered a failure code
  kExitUsage = 2,
  kExitNoAnswer = 3,  // no answer, an RPC error, or output that cannot be written
  kExitNotReady = 4,  // there is no result yet: try again
  kExitInert = 5,     // accepted, does nothing
};
