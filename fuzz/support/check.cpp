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
  // During a run the stream stderr is the simulated one.
  dprintf(2, "BROKEN: %s\n", text);
  abort();
}
