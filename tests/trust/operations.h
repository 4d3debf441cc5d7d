#pragma once

#include <functional>
#include <string>
#include <vector>

#include "trust/traced_daemon.h"

// What the sweeps do to the daemon: one request, and what has to be in place for it.

struct operation {
  std::string name;
  request call;
  std::function<void()> prepare;  // undisturbed, before each time
  bool inert;                     // its procedure does nothing but answer
  bool sequence;                  // a worker does the work, or most of it
  bool expensive;                 // its preparation is a next call
  bool controller;                // it may exchange datagrams with the controller
};

// Every procedure but the sequences, with the example of its description.
std::vector<operation> procedure_operations();

// Load, init, restart and reset, each from where the one before it leads.
std::vector<operation> sequence_operations();

// An update of a profile that cannot be renamed over.
std::vector<operation> in_place_operations();
