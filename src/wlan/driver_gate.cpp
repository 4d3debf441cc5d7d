#include "wlan/driver_gate.h"

#include "diag/trace.h"

std::atomic<int> drivers_inited;

bool driver_is_inited(const char* caller) {
  if (drivers_inited != 0) return true;
  trace_rev_error(caller, "dirver isn't inited. \n ");
  return false;
}
