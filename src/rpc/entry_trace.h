#pragma once

#include "rpc/row_facts.h"

// The entry trace of a call. The controller's procedures on supported extenders and
// firmware updates write it before their handlers; all others do not.

// Traces the entry of a stub in its row's form, with the stub's last member if the form
// shows one. Returns 1: call the handler. For a null text it returns the debug log's
// result, 0 or -1: no handler and no reply then.
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub);
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub, int number);
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub, const char* text);

// Only the last member is used.
template <typename First, typename Second, typename... Rest>
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub, const First&,
                              const Second& second, const Rest&... rest) {
  return trace_entry(entry, stub, second, rest...);
}
