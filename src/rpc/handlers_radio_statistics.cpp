#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "wlan/radio_statistics.h"

// Getters whose back ends fill several values.

int wlan_get_channel_statistics_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  int32_t shares[3];  // seen busy, own AP's, busy
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code = wlan_getChannelStatistics(radio, &shares[0], &shares[1], &shares[2]);
  pack_words(shares, sizeof shares, result);
  return 1;
}

int wlan_get_channel_noise_floor_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  int32_t noise[4];  // lowest, highest, median, average
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code =
      wlan_getChannelNoiseFloor(radio, &noise[0], &noise[1], &noise[2], &noise[3]);
  pack_words(noise, sizeof noise, result);
  return 1;
}

int wlan_get_rssi_table_1_svc(int radio, wlan_config_result_data_t* result, svc_req*) {
  int64_t table[kRssiEntries];
  RPC_TRACE(" WLAN RPC server : [index %d]\n", radio);
  result->return_code = wlan_getRSSITable(radio, table);
  pack_words(table, sizeof table, result);
  for (int i = 0; i < kRssiEntries; ++i) {
    RPC_TRACE(" WLAN RPC server : [i = %d] [RSSI = %lld ]  \n", i,
              static_cast<long long>(table[i]));
  }
  return 1;
}
