#include "support/check.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

void broken(const char* format, ...) {
  char text[4096];
  va_list values;
  va_start(values, format);
  vsnprintf(text, sizeof text, format, values);
  va_end(values);
  // Standard error as a stream is the simulated one during a run.
  dprintf(2, "BROKEN: %s\n", text);
  abort();
}
