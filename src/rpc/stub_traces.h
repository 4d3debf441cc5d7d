#pragma once

// What the stubs of the controller's procedures on supported extenders and
// firmware updates say before they call their handlers; all other stubs are
// silent.

// Traces the stub's entry and, where it has them, its number or its text.
// `argument` is the decoded argument, `stub` the stub's name with its underscore.
// Returns 1: call the handler. For a text that is a null pointer it returns what
// the debug log answered, 0 or -1: no handler then, and no reply.
[[nodiscard]] int trace_stub(const char* stub, const void* argument);
