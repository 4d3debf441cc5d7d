#include "steer/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "diag/trace.h"
#include "statistics/radstat_client.h"
#include "steer/event_records.h"
#include "steer/mac_text.h"

static constexpr char kControlPath[] = "/var/run/mtk_ctrl_path";
static constexpr char kCaller[] = "wlan_getSteerEventReport";

static bool fetch_events(rad_ctrl* client, int radio, control_reply* reply) {
  const steer_event_request request = {kGetSteerEvents, {}, static_cast<uint32_t>(radio) - 1};
  size_t length = sizeof *reply;
  if (rad_ctrl_request(client, &request, sizeof request, reply, &length) != 0) {
    trace_rev_error(kCaller, "request message failed.\n");
    return false;
  }
  if (reply->status == kEventsNotDelivered) {
    trace_rev_error(kCaller, "get event failed.\n");
    return false;
  }
  // Not an error, but reported as one: kept on purpose.
  trace_rev_error(kCaller, "rcv reply_len = %d, event_data->count = %d\n", static_cast<int>(length),
                  reply->count);
  return true;
}

static void trace_time(uint32_t seconds) {
  const time_t when = static_cast<time_t>(seconds);
  struct tm utc = {};
  gmtime_r(&when, &utc);
  trace_rev(kCaller,
            "tm.tm_year=%d, tm.tm_mon=%d, tm.tm_mday=%d, tm.tm_hour=%d, tm.tm_min=%d, "
            "tm.tm_sec=%d, calendar time=%d\n",
            utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
            static_cast<int>(seconds));
}

static steer_event convert(unsigned number, const control_event& event) {
  steer_event out = {};
  char mac[sizeof out.mac + 1];
  snprintf(mac, sizeof mac, MAC_FORMAT, MAC_BYTES(event.mac));
  out.type = event.type;
  memcpy(out.mac, mac, sizeof out.mac);
  out.time = event.time;
  snprintf(out.code, sizeof out.code, "%d", event.code);
  trace_rev(kCaller, "event report entry %u, STA %s, event_type = %u, code = %s\n", number, mac,
            out.type, out.code);
  trace_time(out.time);
  return out;
}

int wlan_getSteerEventReport(int radio, steer_event_report* record) {
  rad_ctrl* client = rad_ctrl_open(kControlPath);
  if (client == nullptr) {
    REV_ERROR("Could not connect\n");
    return -1;
  }
  control_reply reply = {};
  const bool fetched = fetch_events(client, radio, &reply);
  rad_ctrl_close(client);
  if (!fetched) return -1;
  *record = {};
  record->count = reply.count;
  for (unsigned i = 0; i < std::min<unsigned>(reply.count, kSteerEvents); ++i) {
    record->events[i] = convert(i, reply.events[i]);
  }
  return 0;
}
