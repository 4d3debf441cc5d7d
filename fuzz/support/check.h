#pragma once

#include <cstddef>
#include <cstdint>

// Every target: runs one input and returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// A finding: prints what is broken on the process's own standard error and aborts.
[[noreturn]] void broken(const char* format, ...) __attribute__((format(printf, 1, 2)));

#define CHECK(condition) \
  if (!(condition)) broken("%s:%d: not so: %s", __FILE__, __LINE__, #condition)
