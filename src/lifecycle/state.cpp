#include "lifecycle/state.h"

std::atomic<int> drivers_inited;
bool modules_loaded;
