#include "show/output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "base/text.h"
#include "show/json.h"

// The stream remembers that a write failed, but not why.
static void note_error(const output_streams& streams, bool written) {
  const int error_number = errno;
  if (!written && streams.notes->error_number == 0) streams.notes->error_number = error_number;
}

void print(const output_streams& streams, const std::string& text) {
  note_error(streams, fwrite(text.data(), 1, text.size(), streams.out) == text.size());
}

void print_flush(const output_streams& streams) {
  note_error(streams, fflush(streams.out) == 0);
}

exit_status print_note(const output_streams& streams, exit_status status, const std::string& line) {
  const std::string text = text_wrap("wificonf: " + line, terminal_width(streams.err), 0, 10);
  fprintf(streams.err, "%s\n", text.c_str());
  return status;
}

exit_status fail(const output_streams& streams, const failure_report& failure) {
  if (streams.json) print(streams, json_error(failure));
  return print_note(streams, failure.status, failure.line);
}

static const char* kind_of(exit_status status) {
  if (status == kExitUsage) return "usage";
  return status == kExitFailureCode ? "failure_code" : "malformed_reply";
}

exit_status fail(const output_streams& streams, exit_status status, const std::string& line) {
  return fail(streams, {status, kind_of(status), line});
}

size_t terminal_width(FILE* out) {
  int fd = fileno(out);
  if (fd < 0 || isatty(fd) == 0) return 0;
  winsize size{};
  bool known = ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}
