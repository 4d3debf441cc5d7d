#pragma once

#include <atomic>

// The radios' state, as the sequences leave it.

// 1 while the interfaces are up and the driver may be queried; operations that
// query it refuse while it is 0. Written in a turn (see lifecycle/turn.h); read
// by the RPC thread at any time.
extern std::atomic<int> drivers_inited;

// Whether the driver modules are loaded. Read and written in a turn only.
extern bool modules_loaded;
