#include "host/sysfs.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "base/files.h"
#include "base/report.h"

// The kernel merges equal events in a row. The opening in between separates two writers of a pipe.
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

static void drain(sysfs_file& file) {
  char piece[4096];
  for (ssize_t got; (got = read(file.pipe, piece, sizeof piece)) > 0;)
    file.rest.append(piece, static_cast<size_t>(got));
}

// Moves one line of the rest to WRITES, or all of an unfinished one.
static void give_line(sysfs_file& file, std::vector<sysfs_write>& writes) {
  size_t end = file.rest.find('\n');
  size_t size = end == std::string::npos ? file.rest.size() : end + 1;
  if (size > 0) writes.push_back({file.path, less_newline(file.rest.substr(0, size))});
  file.rest.erase(0, size);
}

static sysfs_file* find(sysfs_state& state, int watch) {
  for (sysfs_file& file : state.files) {
    if (file.watch == watch) return &file;
  }
  return nullptr;
}

// One line for each event: the events give the order, the pipes the text.
static void take_event(sysfs_state& state, const inotify_event& event,
                       std::vector<sysfs_write>& writes) {
  sysfs_file* file = find(state, event.wd);
  if (!file || event.mask & IN_OPEN) return;
  if (file->pipe < 0) {
    writes.push_back({file->path, less_newline(file_read(file->path))});
    return;
  }
  if (file->rest.empty()) drain(*file);
  give_line(*file, writes);
}

static bool take_events_in_order(sysfs_state& state, std::vector<sysfs_write>& writes) {
  std::vector<inotify_event> events = take_events(state.notify);
  for (const inotify_event& event : events)
    take_event(state, event, writes);
  return !events.empty();
}

std::vector<sysfs_write> sysfs_take(sysfs_state& state) {
  std::vector<sysfs_write> writes;
  // Several writes may be merged into one event, so lines may be left over. They are returned only
  // once no event came after they were read: until then, another file's may belong in between.
  do {
    take_events_in_order(state, writes);
    for (sysfs_file& file : state.files) {
      if (file.pipe >= 0) drain(file);
    }
  } while (take_events_in_order(state, writes));
  for (sysfs_file& file : state.files) {
    while (!file.rest.empty())
      give_line(file, writes);
  }
  return writes;
}
