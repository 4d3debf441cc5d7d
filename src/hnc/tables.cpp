#include "hnc/tables.h"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "diag/trace.h"
#include "hnc/exchange.h"

static constexpr hnc_reports kReports = {" ", true};

static bool ask_for_row(const char* caller, const char* separator, const char* key, unsigned row,
                        hnc_reply* reply) {
  const hnc_request request = hnc_make_request(kHncGet, key, row);
  if (!hnc_exchange(caller, {separator, true}, request, reply)) return false;
  trace_rev(caller, "%s%sresponse.hneTableEntryGetError = %d\n", caller, separator,
            reply->table_error);
  return reply->table_error != kHncTableError;
}

int hnc_getHneTableEntry(unsigned row, hnc_hne* record) {
  hnc_reply reply = {};
  if (!ask_for_row(__func__, ":", "HneEntry", row, &reply)) return -1;
  *record = reply.hne;
  REV_TRACE("%s - hneLastSyncAttempt  = -%lu-\n", __func__,
            static_cast<unsigned long>(reply.hne.last_sync_attempt));
  return 0;
}

int hnc_getSupportedHneTableEntry(unsigned row, hnc_supported_hne* record) {
  hnc_reply reply = {};
  if (!ask_for_row(__func__, " ", "SuppHneEntry", row, &reply)) return -1;
  *record = reply.supported;
  return 0;
}

int hnc_setHneDeviceName(unsigned row, const char* name) {
  REV_TRACE("%s entered index = %d, device name = %s \n", __func__, static_cast<int>(row), name);
  hnc_request request = hnc_make_request(kHncSet, "DeviceName", row);
  hnc_put_text(request.value, name);
  hnc_reply reply = {};
  if (!hnc_exchange(__func__, kReports, request, &reply)) return -1;
  return reply.table_error != kHncTableError ? 0 : -1;
}

// The texts may fill their fields. The time is asctime's without its newline, so that a
// message stays on one line.
static void trace_record(const char* caller, unsigned row, const hnc_supported_hne& record) {
  if (!console_trace_on()) return;
  const time_t when = record.update_time;
  tm local;
  char stamp[kTimeStampSize];
  log_time_stamp(localtime_r(&when, &local), stamp);
  trace_rev(caller, "@@@@%s index = %d \n", caller, static_cast<int>(row));
  trace_rev(caller,
            " WLAN RPC SERVER {MANF %.64s} {Model Name %.64s} {Model Number %.64s} "
            "{FW URL %.256s} \n",
            record.manufacturer, record.model_name, record.model_number, record.firmware_url);
  trace_rev(caller,
            " WLAN RPC SERVER {FW File Name %.256s} {FW User Name %.256s} { FW PWD %.256s} "
            "{UpDateTime= %d |%s|} \n",
            record.firmware_file_name, record.firmware_user_name, record.firmware_password,
            static_cast<int>(record.update_time), stamp);
  trace_rev(caller, " WLAN RPC SERVER {index = %d} { Row Status = %d} {Config On Demand %d}\n",
            record.index, record.row_status, record.config_on_demand);
}

// Copies a text into a zeroed field, which it may fill without a terminator.
template <size_t Size>
static void copy_text(char (&to)[Size], const char (&from)[Size]) {
  memcpy(to, from, strnlen(from, Size));
}

static void copy_record(hnc_supported_hne* to, const hnc_supported_hne& from) {
  to->index = from.index;
  to->row_status = from.row_status;
  copy_text(to->manufacturer, from.manufacturer);
  copy_text(to->model_name, from.model_name);
  copy_text(to->model_number, from.model_number);
  copy_text(to->firmware_url, from.firmware_url);
  copy_text(to->firmware_file_name, from.firmware_file_name);
  copy_text(to->firmware_user_name, from.firmware_user_name);
  copy_text(to->firmware_password, from.firmware_password);
  to->update_time = from.update_time;
  to->config_on_demand = from.config_on_demand;
}

int hnc_setSupportedHneTableEntry(unsigned row, const hnc_supported_hne* record) {
  trace_record(__func__, row, *record);
  hnc_request request = hnc_make_request(kHncSet, "SuppHneEntry", row);
  copy_record(&request.supported, *record);
  hnc_reply reply = {};
  return hnc_exchange(__func__, kReports, request, &reply) ? 0 : -1;
}

int hnc_setSupportedHneRowStatus(unsigned row, int status) {
  REV_TRACE("@@@@%s index = %d, Row Status = %d\n", __func__, static_cast<int>(row), status);
  hnc_request request = hnc_make_request(kHncSet, "RowStatus", row);
  snprintf(request.value, sizeof request.value, "%d", status);
  REV_TRACE("@@@ %s request.data:-%s-\n", __func__, request.value);
  hnc_reply reply = {};
  return hnc_exchange(__func__, kReports, request, &reply) ? 0 : -1;
}
