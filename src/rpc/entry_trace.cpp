#include "rpc/entry_trace.h"

#include "diag/trace.h"

static constexpr char kOnce[] = "DEBUG:>>>>>>>>>>>>>>>>>>>>>>>>> %s. \n";
static constexpr char kTwice[] = "DEBUG:DEBUG: >>>>>>>>>>>>>>>>>>>>>>>>> %s. \n";

int trace_entry(const entry_trace& entry, const char* stub) {
  if (entry.form == entry_form::kNothing) trace_rpc(stub, kOnce, stub);
  if (entry.form == entry_form::kNothingTwice) trace_rpc(stub, kTwice, stub);
  return 1;
}

int trace_entry(const entry_trace& entry, const char* stub, int number) {
  if (entry.form != entry_form::kNumber) return trace_entry(entry, stub);
  trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> %s. %s:-%d-\n", stub, entry.label, number);
  return 1;
}

int trace_entry(const entry_trace& entry, const char* stub, const char* text) {
  if (entry.form != entry_form::kText) return trace_entry(entry, stub);
  trace_rpc(stub, kTwice, stub);
  if (text == nullptr) {
    return trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> Pointer is NULL in %s func. \n", stub);
  }
  trace_rpc(stub, "DEBUG >>>>>>>>>>>>>>>>>>>>>>>>> %s. %s:-%s-\n", stub, entry.label, text);
  return 1;
}
