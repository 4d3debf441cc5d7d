#pragma once

#include <atomic>
#include <cstdint>

// Lifecycle requests take many seconds, longer than a caller waits: they are
// queued to one detached worker thread, which runs them one at a time.
//
// The worker sleeps while nothing is queued. A request waits out a full second
// before it starts, so that the requests of one second meet in the queue:
// restarts coalesce, and of more than two requests the last displaces the
// second. At most one request starts in a second.

// Works off one request; returns the address of the last result.
using lifecycle_routine = void* (*)(const uint8_t* mask);

// Radios of a restart.
constexpr uint8_t kMask24 = 0x01;
constexpr uint8_t kMask5 = 0x10;
constexpr uint8_t kMaskAll = 0xFF;

// Queues a request; the first one starts the worker. `mask` is the radios of a
// restart, else null; it is copied. `name`, at most 16 characters or null for
// none, and `state`, the running flag of its kind, are for the traces. Always 0:
// a request that memory cannot be had for is lost.
int wlan_queueLifecycleRequest(lifecycle_routine routine, const uint8_t* mask, const char* name,
                               std::atomic<bool>* state);

// Takes the radios that restarts have asked for and marks the restart as
// running: a restart asked for from then on is one more request.
// For the handler of a restart, on the worker.
[[nodiscard]] uint8_t begin_restart();
