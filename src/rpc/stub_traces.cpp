#include "rpc/stub_traces.h"

#include <string_view>

#include "diag/trace.h"
#include "rpc/column_types.h"

namespace {

// What follows the index in the argument, if anything does that is shown.
enum class shown {
  nothing,  // "DEBUG:>>>", the form of the numbers' stubs
  number,
  text_getter,  // "DEBUG:DEBUG: >>>", the texts' form, though there is none
  text,         // with the guard against a null pointer
};

struct stub_row {
  std::string_view stub;
  shown what;
  const char* label;
};

// The two text setters that are not here are silent: kept on purpose.
constexpr stub_row kStubs[] = {
    {"_hnc_set_updatefw_enable_1", shown::number, "enable"},
    {"_hnc_get_updatefw_url_1", shown::nothing, nullptr},
    {"_hnc_set_updatefw_url_1", shown::text, "URL"},
    {"_hnc_get_updatefw_filename_1", shown::nothing, nullptr},
    {"_hnc_set_updatefw_filename_1", shown::text, "filename"},
    {"_hnc_get_updatefw_username_1", shown::nothing, nullptr},
    {"_hnc_set_updatefw_username_1", shown::text, "username"},
    {"_hnc_get_updatefw_password_1", shown::nothing, nullptr},
    {"_hnc_set_updatefw_password_1", shown::text, "password"},
    {"_hnc_get_updatefw_time_1", shown::nothing, nullptr},
    {"_hnc_set_updatefw_time_1", shown::text, "time"},
    {"_hnc_get_supportedhnenumberofentries_1", shown::nothing, nullptr},
    {"_hnc_set_supportedhnenumberofentries_1", shown::number, "no_of_entries"},
    {"_hnc_get_supportedhneconfigondemand_1", shown::nothing, nullptr},
    {"_hnc_set_supportedhneconfigondemand_1", shown::number, "enable"},
    {"_hnc_get_supportedhnemanufacturer_1", shown::text_getter, nullptr},
    {"_hnc_get_supportedhnemodelname_1", shown::text_getter, nullptr},
    {"_hnc_get_supportedhnemodelnumber_1", shown::nothing, nullptr},
    {"_hnc_set_supportedhnemodelnumber_1", shown::text, "model_number"},
};

// The arguments of the setters share two shapes.
using number_argument = hnc_set_supportedhnenumberofentries_1_argument;
using text_argument = hnc_set_updatefw_url_1_argument;
static_assert(sizeof(number_argument) == sizeof(wlan_set_enable_1_argument));
static_assert(sizeof(text_argument) == sizeof(hnc_set_supportedhnemodelnumber_1_argument));

}  // namespace

static int trace_text(const char* stub, const char* label, const char* text) {
  trace_rpc(stub, "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> %s. \n", stub);
  if (text == nullptr) {
    return trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in %s func. \n", stub);
  }
  trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> %s. %s:-%s-\n", stub, label, text);
  return 1;
}

static int trace_row(const stub_row& row, const void* argument) {
  const char* stub = row.stub.data();
  switch (row.what) {
    case shown::nothing:
      trace_rpc(stub, "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> %s. \n", stub);
      return 1;
    case shown::number:
      trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> %s. %s:-%d-\n", stub, row.label,
                static_cast<const number_argument*>(argument)->no_of_entries);
      return 1;
    case shown::text_getter:
      trace_rpc(stub, "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> %s. \n", stub);
      return 1;
    case shown::text:
      return trace_text(stub, row.label, static_cast<const text_argument*>(argument)->url);
  }
  return 1;
}

int trace_stub(const char* stub, const void* argument) {
  for (const stub_row& row : kStubs) {
    if (row.stub == stub) return trace_row(row, argument);
  }
  return 1;
}
