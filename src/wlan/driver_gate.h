#pragma once

#include <atomic>

// 1 while the interfaces are up and the driver may be queried; while it is 0, operations
// that query the driver refuse. Written by the lifecycle sequences in their turn, read by
// the RPC thread at any time.
extern std::atomic<int> drivers_inited;

// Whether the driver may be queried; if not, reported in the name of `caller`.
[[nodiscard]] bool driver_is_inited(const char* caller);
