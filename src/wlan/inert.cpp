#include "wlan/inert.h"

// The parameters have names for the reader of the catalogue only.
#pragma GCC diagnostic ignored "-Wunused-parameter"

#define INERT_OPERATION(status, operation, parameters) \
  int operation parameters {                           \
    return status;                                     \
  }
#include "wlan/inert.def"
