#include "rpc/handlers.h"

// Handlers without a back end: the reply is an all-zero record.

int wlan_get_radio_upstream_1_svc(int, wlan_config_result_data_t*, svc_req*) {
  return 1;
}

#define EMPTY_GETTER(handler)                              \
  int handler(int, wlan_config_result_data_t*, svc_req*) { \
    return 1;                                              \
  }
DCS_GETTERS(EMPTY_GETTER)
