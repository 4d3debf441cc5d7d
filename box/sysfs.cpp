#include "sysfs.h"

#include <errno.h>
#include <fcntl.h>
#include <stddef.h>
#include <string.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "files.h"
#include "report.h"

// The kernel merges equal events in a row. Opening tells two writers of one pipe apart.
static constexpr uint32_t kPipeEvents = IN_MODIFY | IN_OPEN;
static constexpr uint32_t kPlainEvents = IN_CLOSE_WRITE;

bool sysfs_open(sysfs_state& state) {
  state.notify = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  return state.notify >= 0 || report_errno(nullptr, "watch files");
}

static bool add(sysfs_state& state, const std::string& path, int pipe, uint32_t events) {
  int watch = inotify_add_watch(state.notify, path.c_str(), events);
  if (watch < 0) return report_errno(nullptr, "watch %s", path.c_str());
  state.files.push_back({path, watch, pipe, ""});
  return true;
}

bool sysfs_make_pipe(sysfs_state& state, const std::string& path) {
  int pipe = -1;
  if (mkfifo(path.c_str(), 0200) == 0) {
    pipe = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  }
  if (pipe < 0) return report_errno(nullptr, "make %s", path.c_str());
  return add(state, path, pipe, kPipeEvents);
}

bool sysfs_make_plain(sysfs_state& state, const std::string& path, const std::string& text) {
  return file_write(path, text) && add(state, path, -1, kPlainEvents);
}

static std::vector<inotify_event> take_events(int notify) {
  alignas(inotify_event) char bytes[8192];
  std::vector<inotify_event> events;
  for (ssize_t got; (got = read(notify, bytes, sizeof bytes)) > 0;) {
    for (char* at = bytes; at < bytes + got;) {
      const inotify_event* event = reinterpret_cast<inotify_event*>(at);
      events.push_back(*event);
      at += sizeof *event + event->len;
    }
  }
  return events;
}

static std::string less_newline(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

// One line of what came through the pipe, or what there is of it.
static std::string take_line(sysfs_file& file) {
  char piece[4096];
  for (ssize_t got; (got = read(file.pipe, piece, sizeof piece)) > 0;)
    file.rest.append(piece, static_cast<size_t>(got));
  size_t end = file.rest.find('\n');
  size_t size = end == std::string::npos ? file.rest.size() : end + 1;
  std::string line = file.rest.substr(0, size);
  file.rest.erase(0, size);
  return line;
}

// The events tell the order, the pipes what was written. After a file's last event all of it is
// taken, however many writes were merged into one event.
static void take_pipe(sysfs_file& file, bool is_last, std::vector<sysfs_write>& writes) {
  do {
    std::string line = take_line(file);
    if (!line.empty()) writes.push_back({file.path, less_newline(line)});
  } while (is_last && !file.rest.empty());
}

static sysfs_file* find(sysfs_state& state, int watch) {
  for (sysfs_file& file : state.files) {
    if (file.watch == watch) return &file;
  }
  return nullptr;
}

std::vector<sysfs_write> sysfs_take(sysfs_state& state) {
  std::vector<sysfs_write> writes;
  std::vector<inotify_event> events = take_events(state.notify);
  std::erase_if(events, [](const inotify_event& e) { return e.mask & IN_OPEN; });
  for (size_t i = 0; i < events.size(); i++) {
    sysfs_file* file = find(state, events[i].wd);
    if (!file) continue;
    bool is_last = std::none_of(events.begin() + static_cast<ptrdiff_t>(i) + 1, events.end(),
                                [&](const inotify_event& e) { return e.wd == events[i].wd; });
    if (file->pipe >= 0) take_pipe(*file, is_last, writes);
    if (file->pipe < 0) writes.push_back({file->path, less_newline(file_read(file->path))});
  }
  return writes;
}
