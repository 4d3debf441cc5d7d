#include "rpc/handlers.h"

#include <string_view>

#include "diag/trace.h"
#include "hnc/settings.h"
#include "hnc/tables.h"
#include "rpc/members.h"
#include "rpc/reply.h"
#include "steer/band_steering_settings.h"
#include "steer/bss_service.h"
#include "steer/btm.h"
#include "steer/channel_utilization.h"
#include "steer/client_steering.h"
#include "steer/dcs_settings.h"
#include "steer/measurements.h"
#include "steer/nonassoc.h"
#include "steer/steer_events.h"
#include "steer/steer_keys.h"
#include "steer/tx_power.h"
#include "wlan/access_control.h"
#include "wlan/bss_settings.h"
#include "wlan/inert.h"
#include "wlan/led.h"
#include "wlan/radio_statistics.h"
#include "wlan/security.h"
#include "wlan/stations.h"
#include "wlan/survey.h"
#include "wlan/traffic.h"
#include "wlan/wps.h"

// The handlers that follow from their payload kind. The values are packed
// whether or not the back end succeeded.

namespace {

enum class form { plain, bracketed };

// What a getter was asked for; it shows its leading index only.
void trace_asked(const char* handler, form) {
  trace_rpc(handler, " WLAN RPC server :\n");
}

void trace_asked(const char* handler, form shape, int index, int /*second*/ = 0) {
  if (shape == form::plain) trace_rpc(handler, " WLAN RPC server : index %d\n", index);
  if (shape == form::bracketed) trace_rpc(handler, " WLAN RPC server : [index %d]\n", index);
}

void trace_asked(const char* handler, form, const char* text) {
  trace_rpc(handler, " WLAN RPC server : [%s]\n", text);
}

// The controller's text getters show their answer a second time.
void trace_text(const char* handler, const wlan_config_result_data_t& result) {
  const char* text = result.return_data.return_data_val;
  if (text == nullptr || !std::string_view(handler).starts_with("hnc_")) return;
  trace_rpc(handler, "DEBUG>>>>>>>>>>>>>>>>>In %s fun. result->return_data.return_data_val:-%s-\n",
            handler, text);
}

}  // namespace

#define HANDLER_CODE(members, size, handler, back_end)                                 \
  int handler(PARAMETERS(members) result_CODE* result, svc_req*) {                     \
    RPC_TRACE(" WLAN RPC server : " SHOWN_FORMAT(members) "\n" SHOWN_VALUES(members)); \
    *result = CALL(back_end, ARGUMENTS(members));                                      \
    return 1;                                                                          \
  }

#define HANDLER_INT(members, size, handler, back_end)                 \
  int handler(PARAMETERS(members) result_INT* result, svc_req*) {     \
    int value = 0;                                                    \
    trace_asked(__func__, form::plain ARGUMENTS(members));            \
    result->return_code = CALL(back_end, ARGUMENTS(members), &value); \
    pack_int(__func__, value, result);                                \
    return 1;                                                         \
  }

#define HANDLER_TEXT(members, size, handler, back_end)              \
  int handler(PARAMETERS(members) result_TEXT* result, svc_req*) {  \
    char text[size] = {};                                           \
    trace_asked(__func__, form::bracketed ARGUMENTS(members));      \
    result->return_code = CALL(back_end, ARGUMENTS(members), text); \
    pack_text(__func__, text, sizeof text, result);                 \
    trace_text(__func__, *result);                                  \
    return 1;                                                       \
  }

#define HANDLER_WORDS(members, size, handler, back_end)               \
  int handler(PARAMETERS(members) result_WORDS* result, svc_req*) {   \
    alignas(uint64_t) unsigned char record[size] = {};                \
    trace_asked(__func__, form::bracketed ARGUMENTS(members));        \
    result->return_code = CALL(back_end, ARGUMENTS(members), record); \
    pack_words(record, sizeof record, result);                        \
    return 1;                                                         \
  }

#define HANDLER_IMAGE(members, size, handler, back_end)                        \
  int handler(PARAMETERS(members) result_IMAGE* result, svc_req*) {            \
    alignas(uint64_t) unsigned char record[size] = {};                         \
    trace_asked(__func__, form::bracketed ARGUMENTS(members));                 \
    result->return_code = CALL(back_end, ARGUMENTS(members), record);          \
    pack_image(record, sizeof record, result);                                 \
    RPC_TRACE(" WLAN RPC server : result->return_data.return_data_len = %u\n", \
              result->return_data.return_data_len);                            \
    return 1;                                                                  \
  }

#define HANDLER_NONE(members, size, handler, back_end)             \
  int handler(PARAMETERS(members) result_NONE* result, svc_req*) { \
    trace_asked(__func__, form::plain ARGUMENTS(members));         \
    result->return_code = CALL(back_end, ARGUMENTS(members));      \
    return 1;                                                      \
  }

#define PROCEDURE(number, name, stub, argument, members, payload, size, handler, back_end, \
                  summary)                                                                 \
  HANDLER_##payload(members, size, handler, back_end)
#define OWN(...)
#include "rpc/procedures.def"
