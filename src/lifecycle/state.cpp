#include "lifecycle/state.h"

lifecycle_state lifecycle = {
    .lock = PTHREAD_MUTEX_INITIALIZER,
    .turn_changed = PTHREAD_COND_INITIALIZER,
    .queue_filled = PTHREAD_COND_INITIALIZER,
    .turn_taken = false,
    .load_running = false,
    .init_running = false,
    .restart_running = false,
    .reset_running = false,
    .modules_loaded = false,
    .wlan_loaded = true,
    .wlan_initialized = true,
    .last_result = 0,
    .queue_head = nullptr,
    .pending_restart = 0,
    .worker_created = false,
};
