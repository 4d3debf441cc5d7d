#pragma once

#include <pthread.h>

#include <atomic>

// What the threads share of the radios' state.

// Held by whichever thread runs a sequence, so that a reset on the RPC thread
// and a request on the worker never mix: modules, interfaces and flags agree
// when it is free. A reset that meets a load waits for its end.
extern pthread_mutex_t lifecycle_mutex;

// 1 while the interfaces are up and the driver may be queried; operations that
// query it refuse while it is 0. Written by the worker, and by the RPC thread
// in a reset; read by both.
extern std::atomic<int> drivers_inited;

// Whether the driver modules are loaded. Written by the worker in a load, and
// by whichever thread resets; read by both.
extern std::atomic<bool> modules_loaded;
