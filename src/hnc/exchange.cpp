#include "hnc/exchange.h"

#include "diag/trace.h"
#include "sys/whole_file.h"

hnc_request hnc_make_request(uint32_t type, const char* key, uint32_t index) {
  hnc_request request = {};
  request.type = type;
  request.index = index;
  hnc_put_text(request.name, key);
  return request;
}

bool hnc_running() {
  return path_exists(kHncMarker);
}

bool hnc_exchange(const char* caller, const hnc_reports& reports, const hnc_request& request,
                  hnc_reply* reply) {
  if (!hnc_running()) {
    if (reports.not_running != nullptr) {
      trace_rev_error(caller, "%s%sHNC Process is not running\n", caller, reports.not_running);
    }
    return false;
  }
  if (sendMessage(HOST_IP, HOST_PORT, &request, reply) == 0) return true;
  if (reports.send_failed) {
    trace_rev_error(caller, "%s Failed to send messgae to HNC Listner\n", caller);
  }
  return false;
}
