#include "diag/trace.h"
#include "rpc/handlers.h"
#include "rpc/reply.h"
#include "steer/steer_keys.h"

// Handlers of steering texts whose buffers or replies are not the usual ones:
// the keys' bounds leave no room for a NUL in the table's sizes, and a MAC
// address goes out in a record of its own.

using key_getter = int (*)(int index, char* text);

static constexpr size_t kMacReply = 18;  // bytes, the NUL included

static int answer_mac(const char* handler, key_getter get, int index,
                      wlan_config_result_data_t* result) {
  char text[kMacKeyLength + 1] = {};
  trace_rpc(handler, " WLAN RPC server : [index %d]\n", index);
  result->return_code = get(index, text);
  text[kMacReply - 1] = '\0';
  pack_image(text, kMacReply, result);
  trace_rpc(handler, " WLAN RPC server : [out_str = %s ]\n", text);
  return 1;
}

static int answer_text(const char* handler, key_getter get, int index,
                       wlan_config_result_data_t* result) {
  char text[kPayloadKeyLength + 1] = {};
  trace_rpc(handler, " WLAN RPC server : [index %d]\n", index);
  result->return_code = get(index, text);
  pack_text(handler, text, sizeof text, result);
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

int wlan_get_hnc_action_frame_category_type_1_svc(int bss, wlan_config_result_data_t* result,
                                                  svc_req*) {
  return answer_text(__func__, wlan_getHncActionFrameType, bss, result);
}

int wlan_get_hnc_action_frame_payload_1_svc(int bss, wlan_config_result_data_t* result, svc_req*) {
  return answer_text(__func__, wlan_getHncActionFramePayload, bss, result);
}
