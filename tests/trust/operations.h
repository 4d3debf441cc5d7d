#pragma once

#include <functional>
#include <string>
#include <vector>

#include "trust/traced_daemon.h"

// What the sweeps do to the daemon: one request, and what it needs beforehand.

struct operation {
  std::string name;
  request call;
  std::function<void()> prepare;  // without failures, before each run
  bool inert;                     // its procedure does nothing but answer
  bool sequence;                  // a worker does all or most of the work
  bool expensive;                 // its preparation already makes the next call
  bool controller;                // it may exchange datagrams with the controller
};

// Every procedure except the sequences, with its documented example.
std::vector<operation> procedure_operations();

// Load, init, restart and reset, each from the state in which the one before it ends.
std::vector<operation> sequence_operations();

// Updates of a profile that cannot be replaced by renaming a new file over it.
std::vector<operation> in_place_operations();
