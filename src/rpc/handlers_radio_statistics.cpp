#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "statistics/radio.h"

// Getters with several values.

int wlan_get_channel_statistics_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_channel_statistics> shares = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code =
      wlan_getChannelStatistics(radio, &shares.channel_busy, &shares.ap_activity, &shares.busy);
  pack_words(&shares, sizeof shares, result);
  return 1;
}

int wlan_get_channel_noise_floor_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_channel_noise_floor> noise = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code = wlan_getChannelNoiseFloor(radio, &noise.minimum, &noise.maximum,
                                                  &noise.median, &noise.average);
  pack_words(&noise, sizeof noise, result);
  return 1;
}

int wlan_get_rssi_table_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  value_of<row_wlan_get_rssi_table> table = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code = wlan_getRSSITable(radio, table);
  pack_words(table, sizeof table, result);
  for (int i = 0; i < kRssiEntries; ++i) {
    RPC_TRACE(" WLAN RPC server : [i = %d] [RSSI = %lld ]  \n", i,
              static_cast<long long>(table[i]));
  }
  return 1;
}
