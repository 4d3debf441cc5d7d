#pragma once

#include "rpc/column_types.h"

// The service handlers, one per procedure, declared from the table. Each takes
// the members of its argument in order, the zeroed result and the request,
// which none looks at. It traces, calls its back-end operation, copies the
// status into the result and packs the value, if any, into heap memory that the
// dispatcher frees after the reply. Returns 1: send the reply; 0 or less: none.

#define INDEX(name) int name,
#define FIELD(type, name) type name,
#define ONLY_INDEX(name) int name,
#define ONLY(type, name) type name,
#define PROCEDURE(number, name, stub, argument, members, payload, size, handler, back_end, \
                  summary)                                                                 \
  int handler(members result_##payload* result, svc_req* request);
#include "rpc/procedures.def"

// Handlers without a procedure number: getters for the DCS settings that only
// the setters ever got numbers for. They answer an empty record.
#define DCS_GETTERS(GETTER)                                          \
  GETTER(wlan_get_mso_dcs_on_1_svc)                                  \
  GETTER(wlan_get_user_dcs_on_1_svc)                                 \
  GETTER(wlan_get_dcs_serving_channel_sample_time_1_svc)             \
  GETTER(wlan_get_dcs_serving_channel_sample_num_1_svc)              \
  GETTER(wlan_get_dcs_medium_utilization_threshold_1_svc)            \
  GETTER(wlan_get_dcs_off_channel_scan_period_1_svc)                 \
  GETTER(wlan_get_dcs_off_channel_scan_sample_num_1_svc)             \
  GETTER(wlan_get_dcs_channel_switch_time_window_1_svc)              \
  GETTER(wlan_get_dcs_channel_switch_limited_num_1_svc)              \
  GETTER(wlan_get_dcs_medium_utilization_weight_1_svc)               \
  GETTER(wlan_get_dcs_medium_utilization_latest_sample_weight_1_svc) \
  GETTER(wlan_get_dcs_radio_channel_power_ajuster_1_svc)             \
  GETTER(wlan_get_dcs_rssi_weight_1_svc)

#define DECLARE_GETTER(handler) \
  int handler(int radio, wlan_config_result_data_t* result, svc_req* request);
DCS_GETTERS(DECLARE_GETTER)
#undef DECLARE_GETTER
