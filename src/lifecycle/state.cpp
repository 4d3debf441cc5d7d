#include "lifecycle/state.h"

pthread_mutex_t lifecycle_mutex = PTHREAD_MUTEX_INITIALIZER;
std::atomic<int> drivers_inited;
std::atomic<bool> modules_loaded;
