#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "steer/byte_counters.h"
#include "sys/board.h"
#include "wlan/stations.h"
#include "wlan/traffic.h"

// Handlers of stations and counters that choose between back ends or show more
// than the derived ones.

enum { kStatsOfBss, kStatsOfRadio };

// An unknown type fails and asks the driver nothing.
static int read_stats(int bss, u_int type, uint32_t* words) {
  if (type == kStatsOfBss) return wlan_getStats(bss, words);
  if (type == kStatsOfRadio) return wlan_getRadioStats(bss, words);
  return -1;
}

int wlan_get_stats_1_svc(int bss, u_int type, wlan_config_result_data_t* result, svc_req*) {
  uint32_t words[kRadioStatsWords] = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", bss);
  result->return_code = read_stats(bss, type, words);
  pack_words(words, sizeof words, result);
  return 1;
}

int wlan_get_assoc_devices_table_1_svc(int bss, wlan_config_result_data_t* result, svc_req*) {
  driver_station_table table = {};
  RPC_TRACE(" WLAN RPC server : [index %d]\n", bss);
  result->return_code = wlan_getAssocDevicesTable_2(bss, &table);
  pack_image(&table, sizeof table, result);
  RPC_TRACE(" WLAN RPC server : result->return_data.return_data_len = %u \n",
            result->return_data.return_data_len);
  return 1;
}

// The counters are brought up to date first; where that fails the value is 0.
static int answer_bytes(const char* handler, int index,
                        uint64_t (*bytes)(int, uint64_t byte_counter::*),
                        uint64_t byte_counter::*direction, wlan_config_result_data_t* result) {
  trace_rpc(handler, " WLAN RPC server : [index %d]\n", index);
  const int radio = bss_to_radio_index(index);
  result->return_code = radio == -1 ? -1 : wlan_getSSIDTxRxBytes(radio);
  const uint64_t value = result->return_code == 0 ? bytes(index, direction) : 0;
  pack_words(&value, sizeof value, result);
  return 1;
}

#define BYTES_GETTER(handler, bytes, direction)                                    \
  int handler(int index, wlan_config_result_data_t* result, svc_req*) {            \
    return answer_bytes(__func__, index, bytes, &byte_counter::direction, result); \
  }
BYTES_GETTER(wlan_get_radio_bytes_send_1_svc, radio_bytes, sent)
BYTES_GETTER(wlan_get_radio_bytes_receive_1_svc, radio_bytes, received)
BYTES_GETTER(wlan_get_ssid_bytes_send_1_svc, bss_bytes, sent)
BYTES_GETTER(wlan_get_ssid_bytes_receive_1_svc, bss_bytes, received)
