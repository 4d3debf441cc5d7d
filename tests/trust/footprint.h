#pragma once

#include <set>
#include <string>

// What the daemon holds while it stands still, and what it has left behind.

struct footprint {
  long heap_blocks;
  std::set<std::string> descriptors;  // "4 socket:[123]"; without those kept on purpose
  std::set<std::string> children;     // processes that were not collected
  std::set<std::string> files;        // in the directories that it writes to
};

footprint take_footprint();

// What stands in `now` and not in `before`, one line; empty when nothing does. The heap
// is not compared: whether it grows, only a repetition tells.
std::string what_is_left(const footprint& before, const footprint& now);

// Names the profile lock that somebody holds; empty when both can be taken.
std::string held_lock();

// Every network interface and whether it is up, a line each.
std::string interface_states();
