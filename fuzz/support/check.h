#pragma once

#include <cstddef>
#include <cstdint>

// What every target is: it takes one input. Always 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// A finding: says what is broken, on the process's own standard error, and ends
// it as a crash does.
[[noreturn]] void broken(const char* format, ...) __attribute__((format(printf, 1, 2)));

#define CHECK(condition) \
  if (!(condition)) broken("%s:%d: not so: %s", __FILE__, __LINE__, #condition)
