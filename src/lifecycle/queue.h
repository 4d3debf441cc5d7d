#pragma once

#include "lifecycle/state.h"

// Lifecycle requests take many seconds, longer than a caller waits: they are
// queued to one detached worker thread, which runs them one at a time.
//
// The worker sleeps while nothing is queued. A request waits out a full second
// before it starts, so that the requests of one second meet in the queue:
// restarts coalesce, and of more than two requests the last displaces the
// second. At most one request starts in a second.

// Queues a request; the first one starts the worker. `mask` is the radios of a
// restart, else null; it is copied. `name`, at most 16 characters or null for
// none, and `state`, the running flag of its kind, are for the traces. Always 0:
// a request that memory cannot be had for is lost.
int wlan_queueLifecycleRequest(lifecycle_routine routine, const uint8_t* mask, const char* name,
                               std::atomic<bool>* state);
