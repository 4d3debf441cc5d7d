#pragma once

#include "lifecycle/state.h"

// Lifecycle requests take many seconds, longer than a caller waits. They are queued for
// one detached worker thread, which runs them one at a time.
//
// A request waits a full second before it starts, so that requests made within a second
// meet in the queue: restarts are merged, and of more than two requests the last replaces
// the second. At most one request starts per second.

// Queues a request; the first one starts the worker. `mask` is the radios of a restart,
// else null; it is copied. `name`, at most 16 characters or null, and `state`, the
// running flag of its kind, are for the traces. Always 0: without memory the request is
// lost.
int wlan_queueLifecycleRequest(lifecycle_sequence sequence, const uint8_t* mask, const char* name,
                               std::atomic<bool>* state);
