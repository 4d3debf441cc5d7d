#include "lifecycle/state.h"

std::atomic<int> drivers_inited;
std::atomic<bool> modules_loaded;
