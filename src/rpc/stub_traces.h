#pragma once

#include <cstdint>

// What is said of a call of the controller's procedures on supported extenders
// and firmware updates before their handlers are called. One table has them: the
// dispatcher names them and their stubs are traced. All others are silent.

struct stub_trace;

// The row of a procedure number; null when nothing is traced.
[[nodiscard]] const stub_trace* find_stub_trace(uint32_t procedure);

// Traces the stub's entry and, where it has them, its number or its text.
// `stub` is its name with the underscore, `argument` the decoded argument.
// Returns 1: call the handler. For a text that is a null pointer it returns what
// the debug log answered, 0 or -1: no handler then, and no reply.
[[nodiscard]] int trace_stub(const stub_trace& row, const char* stub, const void* argument);
