#include "hnc/settings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "diag/trace.h"
#include "hnc/exchange.h"

namespace {

struct setting {
  const char* key;
  hnc_reports get;
  const char* filler;
  hnc_reports set;
  bool null_checked;
};

constexpr hnc_reports kReportALL = {":", true};
constexpr hnc_reports kReportNOT_RUNNING = {":", false};
constexpr hnc_reports kReportNOTHING = {nullptr, false};
constexpr bool kNullCHECKED = true;
constexpr bool kNullUNCHECKED = false;

#define HNC_GETTER(name, key, type, instance, get, filler) \
  constexpr setting k##name = {key, kReport##get, filler, kReportNOTHING, kNullUNCHECKED};
#define HNC_PAIR(name, key, type, instance, get, filler, set) \
  constexpr setting k##name = {key, kReport##get, filler, kReport##set, kNullUNCHECKED};
#define HNC_TEXT(name, key, null) \
  constexpr setting k##name = {key, kReportNOTHING, "", kReportNOTHING, kNull##null};
#include "hnc/settings.def"

}  // namespace

// Leaves the answer in reply->value, NUL-terminated.
static bool ask(const char* caller, const setting& row, int index, hnc_reply* reply) {
  trace_rev(caller, "%s entered\n", caller);
  hnc_request request = hnc_make_request(kHncGet, row.key, static_cast<uint32_t>(index));
  hnc_put_text(request.value, row.filler);
  if (!hnc_exchange(caller, row.get, request, reply)) return false;
  reply->value[sizeof reply->value - 1] = '\0';
  return true;
}

static int get_FLAG(const char* caller, const setting& row, int index, int* result) {
  hnc_reply reply = {};
  if (!ask(caller, row, index, &reply)) return -1;
  *result = reply.value[0] == '1' ? 1 : 0;
  trace_rev(caller, "%s:%s %d\n", caller, row.key, *result);
  return 0;
}

static int get_INTEGER(const char* caller, const setting& row, int index, int* result) {
  hnc_reply reply = {};
  if (!ask(caller, row, index, &reply)) return -1;
  *result = atoi(reply.value);
  trace_rev(caller, "%s -------------------> Received %s %d Response \n", caller, reply.value,
            *result);
  trace_rev(caller, "%s:%s %d\n", caller, row.key, *result);
  trace_rev(caller, "%s >>>>>>>>>>>>>>>>>>>>>>>>>>>> Returning %d\n", caller, *result);
  return 0;
}

static int get_TEXT(const char* caller, const setting& row, int index, HNC_RESULT_TEXT) {
  hnc_reply reply = {};
  if (!ask(caller, row, index, &reply)) return -1;
  memcpy(result, reply.value, strlen(reply.value));
  trace_rev(caller, "%s:%s %s\n", caller, row.key, reply.value);
  return 0;
}

static int set_value(const char* caller, const setting& row, int index, const char* value) {
  if (row.null_checked && value == nullptr) {
    trace_rev(caller, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in %s func. \n", caller);
    return -1;
  }
  trace_rev(caller, "%s entered\n", caller);
  hnc_request request = hnc_make_request(kHncSet, row.key, static_cast<uint32_t>(index));
  hnc_put_text(request.value, value);
  hnc_reply reply = {};
  return hnc_exchange(caller, row.set, request, &reply) ? 0 : -1;
}

static int set_value(const char* caller, const setting& row, int index, int value) {
  char text[16];
  snprintf(text, sizeof text, "%d", value);
  return set_value(caller, row, index, text);
}

#define HNC_INDEX_SENT instance
#define HNC_INDEX_IGNORED 0
#define HNC_INDEX_NONE 0

#define HNC_GETTER(name, key, type, instance, ...)                      \
  int hnc_get##name(HNC_ARGUMENT_##instance HNC_RESULT_##type) {        \
    return get_##type(__func__, k##name, HNC_INDEX_##instance, result); \
  }
#define HNC_PAIR(name, key, type, instance, ...)                      \
  HNC_GETTER(name, key, type, instance, __VA_ARGS__)                  \
  int hnc_set##name(HNC_ARGUMENT_##instance HNC_VALUE_##type) {       \
    return set_value(__func__, k##name, HNC_INDEX_##instance, value); \
  }
#include "hnc/settings.def"
#include "sys/command.h"

namespace {

// What switching the controller does, depending on whether its marker file exists.
struct switching {
  bool running;
  int value;
  const char* text;
  const char* command;
};

constexpr switching kSwitching[] = {
    {false, 1, "Creating hnc_enable fle to START HNC process.", "touch /nvram/hnc_enable"},
    {false, 0, "HNC status is disabled and request is to disable. Nothing to do.", nullptr},
    {true, 0, "Stopping HNC by deleting hnc_enable fle.", "rm -rf /nvram/hnc_enable"},
    {true, 1, "HNC status is enabled and request is to enable. Nothing to do.", nullptr},
};

}  // namespace

int hnc_setEnable(int /*instance*/, int value) {
  REV_TRACE("%s Entered. HNC set to : |%d|\n", __func__, value);
  const bool running = hnc_running();
  for (const switching& row : kSwitching) {
    if (row.running != running || row.value != value) continue;
    REV_ERROR("%s:%s \n", __func__, row.text);
    if (row.command != nullptr) run_command(row.command);
  }
  return 0;
}
