#include "diag/trace.h"
#include "lifecycle/calibration.h"
#include "lifecycle/requests.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"

// Handlers that do not pass the procedure's members on unchanged: the lifecycle requests
// and the calibration data.

int wlan_load_1_svc(int, wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE("WLAN RPC server :\n");
  *result = wlan_load();
  return 1;
}

int wlan_init_1_svc(wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE("WLAN RPC server :\n");
  *result = wlan_init();
  return 1;
}

int wlan_reset_1_svc(wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE("WLAN RPC server :\n");
  *result = wlan_reset();
  return 1;
}

int wlan_restart_all_1_svc(wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE("WLAN RPC server :\n");
  *result = wlan_restart_all();
  return 1;
}

int wlan_restart_1_svc(int radio, wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE("WLAN RPC server :\n");
  *result = wlan_restart(radio);
  return 1;
}

int wlan_set_prek_operation_1_svc(int, bool_t enable, wlan_config_return_code_e* result, svc_req*) {
  RPC_TRACE(" WLAN RPC server : [enable=%d]\n", enable);
  *result = wlan_set_prek_operation();
  return 1;
}

int wlan_undo_prek_operation_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  RPC_TRACE(" WLAN RPC server : index %d\n", radio);
  result->return_code = wlan_undo_prek_operation();
  return 1;
}

int wlan_get_prek_status_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  RPC_TRACE(" WLAN RPC server : index %d\n", radio);
  result->return_code = wlan_get_prek_status("iwpriv ra0 e2p 52");
  pack_int(__func__, "prek_status", result->return_code, result);
  return 1;
}
