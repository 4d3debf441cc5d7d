#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "statistics/traffic.h"
#include "steer/btm_list.h"
#include "wlan/stations.h"

// Handlers of stations and counters that choose between back ends or trace more than the
// derived ones.

enum { kStatsOfBss, kStatsOfRadio };

// An unknown type fails without a query of the driver.
static int read_stats(int bss, u_int type, traffic_stats& words) {
  if (type == kStatsOfBss) return wlan_getStats(bss, words);
  if (type == kStatsOfRadio) return wlan_getRadioStats(bss, words);
  return -1;
}

int wlan_get_stats_1_svc(int bss, u_int type, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_stats> words = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", bss);
  result->return_code = read_stats(bss, type, words);
  pack_words(words, sizeof words, result);
  return 1;
}

int wlan_get_assoc_devices_table_1_svc(int bss, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_assoc_devices_table> table = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", bss);
  result->return_code = wlan_getAssocDevicesTable_2(bss, &table);
  pack_image(&table, sizeof table, result);
  RPC_TRACE(" WLAN RPC server : result->return_data.return_data_len = %u \n",
            result->return_data.return_data_len);
  return 1;
}

int wlan_get_btm_associated_device_1_svc(int bss, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_btm_associated_device> list = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", bss);
  result->return_code = list_btm_stations(bss, &list);
  pack_image(&list, sizeof list, result);
  RPC_TRACE(" WLAN RPC server : result->return_data.return_data_len = %u \n",
            result->return_data.return_data_len);
  return 1;
}
