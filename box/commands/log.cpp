#include "commands/log.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "base/journal.h"
#include "base/report.h"
#include "control/reach.h"

using json = nlohmann::ordered_json;

// Members that have their own place in a readable line; the others are printed as name=value.
static constexpr const char* kPlaced[] = {
    "seq",   "time", "pid",      "comm",   "interface", "request",  "name",     "sub",  "object",
    "bytes", "text", "text_hex", "length", "result",    "injected", "delay_ms", "error"};

static bool is_placed(const std::string& name) {
  return std::find(std::begin(kPlaced), std::end(kPlaced), name) != std::end(kPlaced);
}

static std::string text_of(const json& entry, const char* name) {
  return entry.value(name, std::string());
}

// "query survey [13163]", "set SSID=attic", "steer mac=... action=2", "vlan device=eth0".
static std::string what_was_asked(const json& entry) {
  std::string text = text_of(entry, "name");
  if (text == "unknown") text += " " + text_of(entry, "request");
  if (entry.contains("object")) text += " " + text_of(entry, "object");
  if (entry.contains("sub")) {
    if (!entry.contains("object")) text += " " + text_of(entry, "sub");
    text += " [" + std::to_string(entry.value("length", 0)) + "]";
  }
  if (entry.contains("text")) text += " " + text_of(entry, "text");
  for (const auto& [name, value] : entry.items()) {
    if (!is_placed(name) && value.is_string()) text += " " + name + "=" + value.get<std::string>();
  }
  return text;
}

// "  0.012345 ra0 set LEDEnable=1 -> ok  (iwpriv[7])"
static std::string readable(const std::string& line) {
  json entry = json::parse(line, nullptr, false);
  if (!entry.is_object()) return line;
  char time[32];
  snprintf(time, sizeof time, "%10.6f ", entry.value("time", 0.0));
  std::string text = time, interface = text_of(entry, "interface");
  text += (interface.empty() ? "" : interface + " ") + what_was_asked(entry);
  text += " -> " + (entry.contains("error") ? text_of(entry, "error") : "ok");
  if (entry.value("injected", false)) text += " (injected)";
  if (entry.contains("delay_ms")) {
    text += " after " + std::to_string(entry.value("delay_ms", 0)) + " ms";
  }
  if (text_of(entry, "comm").empty()) return text;
  return text + "  (" + text_of(entry, "comm") + "[" + std::to_string(entry.value("pid", 0)) + "])";
}

// Control bytes of a caller's text must not reach the terminal.
static std::string printable(std::string text) {
  for (char& byte : text) {
    if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
  }
  return text;
}

// Prints the journal's new complete lines; keeps the rest in PART.
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

static int open_journal(const std::string& path) {
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) report_errno("inside a box, or with --box from outside", "open %s", path.c_str());
  return fd;
}

// The journal and a watch that reports new lines and the change to a new journal. The watch is set
// before the first read, so that no line is missed in between.
struct followed {
  int fd, watch;
};

static bool begin_to_follow(const std::string& path, followed& f) {
  f.watch = inotify_init1(IN_CLOEXEC);
  if (f.watch < 0 || inotify_add_watch(f.watch, path.c_str(), IN_MODIFY | IN_MOVE_SELF) < 0) {
    return report_errno(nullptr, "watch %s", path.c_str());
  }
  f.fd = open_journal(path);
  return f.fd >= 0;
}

// Waits until the journal changes; false when the box has ended instead.
static bool await_change(int watch, int end) {
  pollfd waiting[] = {{watch, POLLIN, 0}, {end, POLLIN, 0}};
  while (poll(waiting, 2, -1) < 0 && errno == EINTR) {
  }
  return waiting[1].revents == 0;
}

// Reads the events of the watch. MOVED: this is the older journal now and gets no more lines.
static bool take_news(int watch, bool& moved) {
  alignas(inotify_event) char events[4096];
  ssize_t got = read(watch, events, sizeof events);
  moved = false;
  for (ssize_t at = 0; at < got;) {
    const inotify_event* event = reinterpret_cast<const inotify_event*>(events + at);
    moved |= (event->mask & IN_MOVE_SELF) != 0;
    at += static_cast<ssize_t>(sizeof *event + event->len);
  }
  return got > 0 || errno == EINTR;
}

static int follow_journal(const std::string& root, bool as_json) {
  const std::string path = root + kJournalPath;
  const int end = reach_open_end(root);
  followed f = {};
  std::string part;
  bool moved = false;
  if (!begin_to_follow(path, f)) return kExitFailed;
  do {
    print_new(f.fd, part, as_json);
    if (ferror(stdout)) return kExitFailed;
    if (moved) {
      close(f.fd);
      close(f.watch);
      if (!begin_to_follow(path, f)) return kExitFailed;
      print_new(f.fd, part, as_json);
    }
    if (await_change(f.watch, end)) continue;
    print_new(f.fd, part, as_json);
    report("the box has ended");
    return 0;
  } while (take_news(f.watch, moved));
  return kExitFailed;
}

int log_print(const std::string& box, bool follow, bool as_json) {
  std::string root;
  if (!reach_root(box, root)) return kExitFailed;
  if (follow) return follow_journal(root, as_json);
  int fd = open_journal(root + kJournalPath);
  if (fd < 0) return kExitFailed;
  std::string part;
  print_new(fd, part, as_json);
  return 0;
}
