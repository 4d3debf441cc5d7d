// What `gwbox wait` can wait for.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

enum class condition_kind {
  kQuiet,    // the daemon has nothing left to do
  kOn,       // an interface beacons
  kOff,      // it does not
  kStation,  // a station is associated
  kGone,     // it is not
};

struct condition {
  condition_kind kind;
  int interface;  // N of raN
  mac_address mac;
};

// WORDS: "quiet", "on raN", "off raN", "station MAC" or "gone MAC". False with the reason in WRONG.
[[nodiscard]] bool condition_parse(const std::vector<std::string>& words, condition& wanted,
                                   std::string& wrong);

// Whether it holds now; if not, MISSING says why not.
[[nodiscard]] bool condition_holds(trap_state& trap, const condition& wanted, std::string& missing);

// All words that the first may be.
std::vector<std::string> condition_names();
