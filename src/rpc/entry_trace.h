#pragma once

#include "rpc/row_facts.h"

// The trace of a call's entry, which the controller's procedures on supported
// extenders and firmware updates write before their handlers; all others are silent.

// Traces the entry of a stub in the form that its row names, with the last of its
// members where the form shows one. Returns 1: call the handler. For a text that is a
// null pointer it returns what the debug log answered, 0 or -1: no handler then, and
// no reply.
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub);
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub, int number);
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub, const char* text);

// The last member counts.
template <typename First, typename Second, typename... Rest>
[[nodiscard]] int trace_entry(const entry_trace& entry, const char* stub, const First&,
                              const Second& second, const Rest&... rest) {
  return trace_entry(entry, stub, second, rest...);
}
