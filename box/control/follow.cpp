#include "control/follow.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>
#include <cerrno>

#include "base/journal.h"
#include "base/report.h"
#include "control/reach.h"

// The journal and a watch that reports new lines and the change to a new journal. The watch is set
// before the first read, so that no line is missed in between.
struct followed {
  std::string path;
  int fd, watch;
  std::string part;  // of a line that is not complete yet
  bool (*take)(const std::string& line, void* context);
  void* context;
};

static bool open_journal(followed& f) {
  f.watch = inotify_init1(IN_CLOEXEC);
  f.fd = open(f.path.c_str(), O_RDONLY | O_CLOEXEC);
  if (f.fd < 0) {
    return report_errno("inside a box, or with --box from outside", "open %s", f.path.c_str());
  }
  if (f.watch < 0 || inotify_add_watch(f.watch, f.path.c_str(), IN_MODIFY | IN_MOVE_SELF) < 0) {
    return report_errno(nullptr, "watch %s", f.path.c_str());
  }
  return true;
}

static void close_journal(followed& f) {
  for (int fd : {f.fd, f.watch}) {
    if (fd >= 0) close(fd);
  }
}

// Hands on the new complete lines; false once nobody wants more.
static bool take_lines(followed& f) {
  char piece[65536];
  for (ssize_t got; (got = read(f.fd, piece, sizeof piece)) > 0;) {
    f.part.append(piece, static_cast<size_t>(got));
  }
  size_t start = 0;
  bool more = true;
  for (size_t end; more && (end = f.part.find('\n', start)) != std::string::npos; start = end + 1) {
    more = f.take(f.part.substr(start, end - start), f.context);
  }
  f.part.erase(0, start);
  return more;
}

static int milliseconds_until(int64_t us) {
  if (us == kFollowForever) return -1;
  int64_t left = (us - journal_now_us() + 999) / 1000;
  return left < 0 ? 0 : static_cast<int>(left < INT_MAX ? left : INT_MAX);
}

enum class change { kJournal, kEnd, kTime };

static change await_change(int watch, int end, int64_t until_us) {
  pollfd waiting[] = {{watch, POLLIN, 0}, {end, POLLIN, 0}};
  int ready = 0;
  while ((ready = poll(waiting, 2, milliseconds_until(until_us))) < 0 && errno == EINTR) {
  }
  if (ready <= 0) return change::kTime;
  return waiting[1].revents != 0 ? change::kEnd : change::kJournal;
}

// Reads the events of the watch. True: this is the older journal now and gets no more lines.
static bool has_moved(int watch) {
  alignas(inotify_event) char events[4096];
  ssize_t got = read(watch, events, sizeof events);
  bool moved = false;
  for (ssize_t at = 0; at < got;) {
    const inotify_event* event = reinterpret_cast<const inotify_event*>(events + at);
    moved |= (event->mask & IN_MOVE_SELF) != 0;
    at += static_cast<ssize_t>(sizeof *event + event->len);
  }
  return moved;
}

static bool follow_on(followed& f, int end, int64_t until_us) {
  while (take_lines(f)) {
    change what = until_us == 0 ? change::kTime : await_change(f.watch, end, until_us);
    if (what == change::kEnd) static_cast<void>(take_lines(f));
    if (what != change::kJournal) return true;
    if (!has_moved(f.watch)) continue;
    if (!take_lines(f)) return true;
    close_journal(f);
    if (!open_journal(f)) return false;
  }
  return true;
}

int follow_journal(const std::string& root, int64_t until_us,
                   bool (*take)(const std::string& line, void* context), void* context) {
  followed f = {root + kJournalPath, -1, -1, "", take, context};
  int end = until_us == 0 ? -1 : reach_open_end(root);
  bool good = open_journal(f) && follow_on(f, end, until_us);
  close_journal(f);
  if (end >= 0) close(end);
  return good ? 0 : kExitFailed;
}
