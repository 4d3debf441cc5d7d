#include "log.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>

#include "journal.h"
#include "report.h"

using nlohmann::json;

// "  0.012345 ra0 set LEDEnable=1 -> ok  (iwpriv[7])"
static std::string readable(const std::string& line) {
  json entry = json::parse(line, nullptr, false);
  if (!entry.is_object()) return line;
  auto text_of = [&](const char* name) { return entry.value(name, std::string()); };
  auto number_of = [&](const char* name) { return std::to_string(entry.value(name, 0)); };
  char time[32];
  snprintf(time, sizeof time, "%10.6f ", entry.value("time", 0.0));
  std::string text = time;
  text.append(text_of("interface")).append(" ").append(text_of("name"));
  if (text_of("name") == "unknown") text.append(" ").append(text_of("request"));
  if (entry.contains("sub")) {
    text.append(" ").append(text_of("sub")).append(" [").append(number_of("length")).append("]");
  }
  if (entry.contains("text")) text.append(" ").append(text_of("text"));
  text.append(" -> ").append(entry.contains("error") ? text_of("error") : "ok");
  if (entry.value("injected", false)) text.append(" (injected)");
  if (entry.contains("delay_ms"))
    text.append(" after ").append(number_of("delay_ms")).append(" ms");
  return text.append("  (")
      .append(text_of("comm"))
      .append("[")
      .append(number_of("pid"))
      .append("])");
}

// Control bytes of a caller's text must not reach the terminal.
static std::string printable(std::string text) {
  for (char& byte : text) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
  }
  return text;
}

// Prints the whole lines that the journal has beyond what was printed; keeps the rest in PART.
static void print_new(int fd, std::string& part, bool as_json) {
  char piece[65536];
  for (ssize_t got; (got = read(fd, piece, sizeof piece)) > 0;) {
    part.append(piece, static_cast<size_t>(got));
  }
  size_t start = 0;
  for (size_t end; (end = part.find('\n', start)) != std::string::npos; start = end + 1) {
    std::string line = part.substr(start, end - start);
    puts((as_json ? line : printable(readable(line))).c_str());
  }
  part.erase(0, start);
  fflush(stdout);
}

// The watch is set before the first read, so that no line is missed in between.
static int follow_journal(int fd, int watch, bool as_json) {
  std::string part;
  char events[4096];
  do {
    print_new(fd, part, as_json);
    if (ferror(stdout)) return 1;
  } while (read(watch, events, sizeof events) > 0 || errno == EINTR);
  return 1;
}

int log_print(bool follow, bool as_json) {
  int fd = open(JOURNAL_PATH, O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    report_errno("there is one inside a box only: gwbox run", "open %s", JOURNAL_PATH);
    return 1;
  }
  if (!follow) {
    std::string part;
    print_new(fd, part, as_json);
    return 0;
  }
  int watch = inotify_init1(IN_CLOEXEC);
  if (watch < 0 || inotify_add_watch(watch, JOURNAL_PATH, IN_MODIFY) < 0) {
    report_errno(nullptr, "watch %s", JOURNAL_PATH);
    return 1;
  }
  return follow_journal(fd, watch, as_json);
}
