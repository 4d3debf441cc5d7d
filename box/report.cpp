#include "report.h"

#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include <string>

// One write per message: several processes of a box share the terminal.
static void say(const std::string& text) {
  fputs(("gwbox: " + text + "\n").c_str(), stderr);
}

[[gnu::format(printf, 1, 0)]] static std::string formatted(const char* format, va_list arguments) {
  char text[1024];
  vsnprintf(text, sizeof text, format, arguments);
  return text;
}

void report(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  say(formatted(format, arguments));
  va_end(arguments);
}

bool report_errno(const char* hint, const char* format, ...) {
  std::string reason = strerror(errno);
  va_list arguments;
  va_start(arguments, format);
  std::string text = "cannot " + formatted(format, arguments) + ": " + reason;
  va_end(arguments);
  if (hint) text += std::string(" (") + hint + ")";
  say(text);
  return false;
}
