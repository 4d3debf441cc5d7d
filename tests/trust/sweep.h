#pragma once

#include <string>
#include <vector>

#include "trust/operations.h"

// Fails the outside calls and the allocations of one operation, one at a time, and looks
// after each whether the daemon keeps what it promises.

struct tally {
  std::string name;
  int injected[static_cast<int>(call_class::kCount)];
  int allocations;
  int unanswered;                   // the request or its reply was lost with the call that failed
  int replaced;                     // the service child ended and was replaced
  int ended;                        // the daemon ended, as it is meant to
  int mirror_torn;                  // the mirror was neither the old nor the new one
  int code;                         // the undisturbed answer
  std::vector<std::string> broken;  // promises, with the failure that broke them
};

int total_injected(const tally& counts);

// How much is tried: every call with every error of its row; every call with one of them;
// or one call of each class with one error.
enum class extent { kAll, kOnce, kSample };

// `turn` chooses among the errors, and in a sample among the calls of a class.
tally sweep_operation(const operation& op, extent how_much, int turn);
