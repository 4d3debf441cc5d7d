#pragma once

#include <set>
#include <string>

// What an idle daemon holds, and what it has left in its directories.

struct footprint {
  long heap_blocks;
  std::set<std::string> descriptors;  // "4 socket:[123]"; without those that it keeps on purpose
  std::set<std::string> children;     // running, or not yet collected
  std::set<std::string> files;        // in /tmp and /nvram
};

footprint take_footprint();

// What `now` has and `before` does not, on one line; empty when there is nothing. Heap
// blocks are not compared: only repetition shows whether the heap grows.
std::string what_is_left(const footprint& before, const footprint& now);

// The path of a profile lock that somebody holds; empty when both are free.
std::string held_lock();

// Every network interface and whether it is up, one per line.
std::string interface_states();
