#include "wlan/inert.h"

// The parameter names are there only for readers of the catalogue.
#pragma GCC diagnostic ignored "-Wunused-parameter"

#define INERT_OPERATION(status, operation, parameters) \
  int operation parameters {                           \
    return status;                                     \
  }
#include "wlan/inert.def"
