#include "rpc/stub_traces.h"

#include "diag/trace.h"
#include "rpc/column_types.h"

namespace {

enum procedure_number : uint32_t {
#define PROCEDURE(number, name, ...) name = number,
#include "rpc/procedures.def"
};

// What a stub shows behind its name.
enum class shown {
  nothing,         // "DEBUG:>>>", the form of the numbers' stubs
  nothing_double,  // "DEBUG:DEBUG: >>>", the form of the texts' stubs
  number,
  text,  // with the guard against a null pointer
};

}  // namespace

struct stub_trace {
  procedure_number procedure;
  shown what;
  const char* label;
};

static constexpr stub_trace kTraces[] = {
    {HNC_SET_UPDATEFW_ENABLE, shown::number, "enable"},
    {HNC_GET_UPDATEFW_URL, shown::nothing, nullptr},
    {HNC_SET_UPDATEFW_URL, shown::text, "URL"},
    {HNC_GET_UPDATEFW_FILENAME, shown::nothing, nullptr},
    {HNC_SET_UPDATEFW_FILENAME, shown::text, "filename"},
    {HNC_GET_UPDATEFW_USERNAME, shown::nothing, nullptr},
    {HNC_SET_UPDATEFW_USERNAME, shown::text, "username"},
    {HNC_GET_UPDATEFW_PASSWORD, shown::nothing, nullptr},
    {HNC_SET_UPDATEFW_PASSWORD, shown::text, "password"},
    {HNC_GET_UPDATEFW_TIME, shown::nothing, nullptr},
    {HNC_SET_UPDATEFW_TIME, shown::text, "time"},
    {HNC_GET_SUPPORTEDHNENUMBEROFENTRIES, shown::nothing, nullptr},
    {HNC_SET_SUPPORTEDHNENUMBEROFENTRIES, shown::number, "no_of_entries"},
    {HNC_GET_SUPPORTEDHNECONFIGONDEMAND, shown::nothing, nullptr},
    {HNC_SET_SUPPORTEDHNECONFIGONDEMAND, shown::number, "enable"},
    // These two have the texts' form although their argument is an index: kept on purpose.
    {HNC_GET_SUPPORTEDHNEMANUFACTURER, shown::nothing_double, nullptr},
    {HNC_SET_SUPPORTEDHNEMANUFACTURER, shown::text, "manufacturer"},
    {HNC_GET_SUPPORTEDHNEMODELNAME, shown::nothing_double, nullptr},
    {HNC_SET_SUPPORTEDHNEMODELNAME, shown::text, "model_name"},
    {HNC_GET_SUPPORTEDHNEMODELNUMBER, shown::nothing, nullptr},
    {HNC_SET_SUPPORTEDHNEMODELNUMBER, shown::text, "model_number"},
};

// The arguments of the setters share two shapes.
using number_argument = hnc_set_supportedhnenumberofentries_1_argument;
using text_argument = hnc_set_updatefw_url_1_argument;
static_assert(sizeof(number_argument) == sizeof(wlan_set_enable_1_argument));
static_assert(sizeof(text_argument) == sizeof(wlan_set_updatefw_filename_1_argument));
static_assert(sizeof(text_argument) == sizeof(wlan_set_updatefw_username_1_argument));
static_assert(sizeof(text_argument) == sizeof(wlan_set_updatefw_password_1_argument));
static_assert(sizeof(text_argument) == sizeof(wlan_set_updatefw_time_1_argument));
static_assert(sizeof(text_argument) == sizeof(hnc_set_supportedhnemanufacturer_1_argument));
static_assert(sizeof(text_argument) == sizeof(hnc_set_supportedhnemodelname_1_argument));
static_assert(sizeof(text_argument) == sizeof(hnc_set_supportedhnemodelnumber_1_argument));

const stub_trace* find_stub_trace(uint32_t procedure) {
  for (const stub_trace& row : kTraces) {
    if (row.procedure == procedure) return &row;
  }
  return nullptr;
}

static int trace_text(const char* stub, const char* label, const char* text) {
  trace_rpc(stub, "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> %s. \n", stub);
  if (text == nullptr) {
    return trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in %s func. \n", stub);
  }
  trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> %s. %s:-%s-\n", stub, label, text);
  return 1;
}

int trace_stub(const stub_trace& row, const char* stub, const void* argument) {
  switch (row.what) {
    case shown::nothing:
      trace_rpc(stub, "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> %s. \n", stub);
      break;
    case shown::nothing_double:
      trace_rpc(stub, "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> %s. \n", stub);
      break;
    case shown::number:
      trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> %s. %s:-%d-\n", stub, row.label,
                static_cast<const number_argument*>(argument)->no_of_entries);
      break;
    case shown::text:
      return trace_text(stub, row.label, static_cast<const text_argument*>(argument)->url);
  }
  return 1;
}
