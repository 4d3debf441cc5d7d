#pragma once

#include <string>
#include <vector>

#include "trust/operations.h"

// Fails the outside calls and allocations of one operation, one at a time, and checks
// after each that the daemon keeps its promises.

struct tally {
  std::string name;
  int injected[static_cast<int>(call_class::kCount)];
  int allocations;
  int unanswered;                   // the failed call cost the request or its reply
  int replaced;                     // the service child ended and was replaced
  int ended;                        // the daemon ended, as it is meant to
  int mirror_torn;                  // the mirror was neither the old nor the new one
  int code;                         // the answer without a failure
  std::vector<std::string> broken;  // promises, with the failures that broke them
};

int total_injected(const tally& counts);

// kAll: every call with every error of its row. kOnce: every call with one of them.
// kSample: one call of each class with one error.
enum class extent { kAll, kOnce, kSample };

// `turn` chooses among the errors, and in a sample also among the calls of a class.
tally sweep_operation(const operation& op, extent how_much, int turn);
