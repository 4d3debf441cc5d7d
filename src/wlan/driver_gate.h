#pragma once

#include <atomic>

// What says that the driver may be asked.

// 1 while the interfaces are up and the driver may be queried; operations that
// query it refuse while it is 0. Written by the lifecycle sequences, by the thread that
// has the turn; read by the RPC thread at any time.
extern std::atomic<int> drivers_inited;

// Whether the driver may be queried; reports on behalf of `caller` when not.
[[nodiscard]] bool driver_is_inited(const char* caller);
