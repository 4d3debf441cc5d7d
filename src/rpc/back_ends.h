#pragma once

// The operations named in procedures.def, and the records that they fill.

#include "hnc/settings.h"
#include "hnc/tables.h"
#include "lifecycle/calibration.h"
#include "lifecycle/requests.h"
#include "rpc/row_records.h"
#include "statistics/byte_counters.h"
#include "statistics/channel_utilization.h"
#include "statistics/radio.h"
#include "statistics/traffic.h"
#include "steer/band_steering_settings.h"
#include "steer/btm.h"
#include "steer/btm_list.h"
#include "steer/client_steering.h"
#include "steer/dcs_settings.h"
#include "steer/event_records.h"
#include "steer/events.h"
#include "steer/keys.h"
#include "steer/measurements.h"
#include "steer/nonassoc.h"
#include "wlan/access_control.h"
#include "wlan/bss_service.h"
#include "wlan/bss_settings.h"
#include "wlan/led.h"
#include "wlan/security.h"
#include "wlan/stations.h"
#include "wlan/survey.h"
#include "wlan/tx_power.h"
#include "wlan/wps.h"

// The operation of a procedure whose handler has none.
void none();
