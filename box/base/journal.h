// The request journal: one JSON object per line for each trapped request, appended with one write
// before the caller gets its answer, so that whoever made a request finds its line.
//
//   {"seq":1,"time":0.012345,"pid":7,"comm":"iwpriv","interface":"ra0","request":"0x8BE2",
//    "name":"set","length":12,"text":"LEDEnable=1","result":0}
//
// "sub" is there for requests that carry one, and "object", its name, where it has one; "text" for
// text sets ("text_hex" besides, when its bytes are not UTF-8), "bytes", hexadecimal digits, for
// objects that carry a record, "error" (the errno's name) with a result below 0, "injected" and
// "delay_ms" when `gwbox fail` had its hand in it. What else was carried follows by its own names,
// always as texts.
//
// Module calls are named init_module, finit_module and delete_module and have "module" and
// "params". A VLAN request has "command", "device" and "id". Writes to the files of /sys and /proc
// that a box makes new are named sysfs and procfs and have "path" and "text", and no caller. A
// line named profile says what an interface that goes up could not take of its SSID. These
// lines have no "interface" and no "request" where there is none.
#pragma once

#include <sys/types.h>
#include <cstddef>
#include <cstdint>

#include <string>
#include <utility>
#include <vector>

// Inside the box. At its limit the journal becomes the older one, in whose place a new one begins;
// the one that was the older before is gone.
constexpr const char* kJournalPath = "/run/gwbox/journal.jsonl";
constexpr const char* kJournalOlderPath = "/run/gwbox/journal.older.jsonl";
constexpr size_t kJournalLimit = 64 << 20;  // bytes

struct journal {
  int fd;             // the box's own file
  size_t size;        // of that, in bytes
  int copy_fd;        // the file given with --log, or -1
  uint64_t sequence;  // of the last line
  int64_t start_us;   // monotonic clock at the start of the box
};

struct journal_entry {
  pid_t pid;  // the process, not the thread
  std::string comm;
  std::string interface;  // empty: none
  uint32_t request;       // 0: none
  const char* name;
  bool has_sub;
  uint16_t sub;
  const char* object;  // what the sub-command is called; null: nobody knows it
  uint16_t length;     // as announced by the caller
  bool has_text;
  std::string text;
  std::string bytes;  // an object's record as the caller laid it out; empty: none
  std::vector<std::pair<std::string, std::string>> decoded;  // what else was carried
  int result;                                                // 0 or a negative errno
  bool injected;
  int delay_ms;
};

// Microseconds of the monotonic clock.
int64_t journal_now_us();

// Opens the box's file. COPY_FD is kept, not owned.
[[nodiscard]] bool journal_open(journal& j, int copy_fd, int64_t start_us);

// The line of the entry, newline included.
std::string journal_line(const journal_entry& entry, uint64_t sequence, int64_t time_us);

void journal_append(journal& j, const journal_entry& entry);
