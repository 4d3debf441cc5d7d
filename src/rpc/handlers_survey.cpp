#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "wlan/survey.h"

// The handler whose back end returns the length of what it writes.

int wlan_get_ap_scan_result_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_ap_scan_result> record = {};
  unsigned length = 0;
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code = wlan_getApScanResult(radio, &record, &length);
  pack_image(&record, length, result);
  RPC_TRACE(" WLAN RPC server : result->return_data.return_data_len = %u\n",
            result->return_data.return_data_len);
  return 1;
}
