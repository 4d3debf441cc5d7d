#include <cstring>

#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "steer/keys.h"

// Handlers of MAC addresses, which are sent in their own record.

using key_getter = int (*)(int index, char (&text)[kMacKeyLength + 1]);

static int answer_mac(const char* handler, key_getter get, int index,
                      wlan_config_result_data_t* result) {
  char text[kMacKeyLength + 1] = {};
  trace_rpc(handler, " WLAN RPC server : [index %d]\n", index);
  result->return_code = get(index, text);
  mac_answer answer = {};
  memcpy(answer, text, sizeof answer - 1);
  pack_image(answer, sizeof answer, result);
  trace_rpc(handler, " WLAN RPC server : [out_str = %s ]\n", answer);
  return 1;
}

int wlan_get_hnc_steer_sta_mac_address_1_svc(int bss, wlan_config_result_data_t* result, svc_req*) {
  return answer_mac(__func__, wlan_getHncSteerStaMac, bss, result);
}

int wlan_get_hnc_action_frame_mac_address_1_svc(int bss, wlan_config_result_data_t* result,
                                                svc_req*) {
  return answer_mac(__func__, wlan_getHncActionFrameMac, bss, result);
}

int wlan_get_na_sta_request_mac_address_1_svc(int bss, wlan_config_result_data_t* result,
                                              svc_req*) {
  return answer_mac(__func__, wlan_getNonAssocRequestMac, bss, result);
}
