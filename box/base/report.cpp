#include "base/report.h"

#include <sys/ioctl.h>
#include <unistd.h>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <string>

#include "client/base/text.h"

static constexpr size_t kIndent = 7;  // the width of "gwbox: "

// Columns of the terminal on standard error, 0 if that is not a terminal.
static size_t terminal_width() {
  winsize size = {};
  if (!isatty(STDERR_FILENO)) return 0;
  bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

// One write per message: several processes of a box share the terminal.
static void say(const std::string& text) {
  fputs((text_wrap("gwbox: " + text, terminal_width(), 0, kIndent) + "\n").c_str(), stderr);
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
