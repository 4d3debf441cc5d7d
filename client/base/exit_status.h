// The program's exit statuses.
#pragma once

enum exit_status {
  kExitDone = 0,
  kExitFailureCode = 1,  // the daemon answered a failure code
  kExitUsage = 2,
  kExitNoAnswer = 3,  // no answer, an RPC error, or output could not be written
  kExitNotReady = 4,  // no result yet: try again
  kExitInert = 5,     // accepted, does nothing
};
