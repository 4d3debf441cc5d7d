// The request journal: one line with a JSON object for each trapped request. A line is appended
// with one write before the caller gets its answer, so that whoever made a request finds its line.
//
//   {"seq":1,"time":0.012345,"pid":7,"comm":"iwpriv","interface":"ra0","request":"0x8BE2",
//    "name":"set","length":12,"text":"LEDEnable=1","result":0}
//
// Some members are there only if they apply: "sub", the sub-command, and "object", its name;
// "text" of a text set, with "text_hex" if the bytes are not UTF-8; "bytes", in hexadecimal, of an
// object's record; "error", the errno's name, with a negative result; "injected" and "delay_ms" if
// `gwbox fail` interfered. Other decoded values have members of their own, always strings.
//
// Module calls are named init_module and finit_module, with "module" and "params", or
// delete_module, with "module" and "flags". A VLAN request has "command" and "device", and "id" if
// it adds one. Writes to the box's own files of /sys and /proc are named sysfs and procfs; they
// have "path" and "text", and no caller. A line named profile says that an interface went up with
// a shortened SSID. "interface" and "request" are left out where there is none.
//
// Lines with "effect" instead of "name" tell what a request or a command led to:
//
//   {"seq":2,"time":0.020000,"box_time":0.020000,"effect":"station","interface":"ra0",
//    "what":"leaves","mac":"02:00:5e:00:00:01","why":"off air","call":"wlan_restart","xid":"0x12"}
//
// Any line may have "call", the name of the daemon's procedure that is the cause, and "xid", the
// transaction id of that call; "queued" is true if the daemon's worker does what that call asked
// for. gwbox(1) lists the effects.
#pragma once

#include <sys/types.h>
#include <cstddef>
#include <cstdint>

#include <string>
#include <utility>
#include <vector>

// Inside the box. A journal that reaches its limit replaces the older one, and a new one begins.
constexpr const char* kJournalPath = "/run/gwbox/journal.jsonl";
constexpr const char* kJournalOlderPath = "/run/gwbox/journal.older.jsonl";
constexpr size_t kJournalLimit = 64 << 20;  // bytes

struct journal {
  int fd;             // the box's own file
  size_t size;        // of that file, in bytes
  int copy_fd;        // the file given with --log, or -1
  uint64_t sequence;  // of the last line
  int64_t start_us;   // monotonic clock at the start of the box
};

// The call of the daemon that led to something.
struct journal_cause {
  std::string call;  // name of the procedure; empty: none, or not known
  uint32_t xid;
  bool queued;  // done later, by the daemon's worker
};

struct journal_effect {
  const char* effect;
  pid_t pid;  // who did it; 0: unknown
  std::string comm;
  std::string interface;                                     // empty: none
  std::vector<std::pair<std::string, std::string>> members;  // always strings
  bool has_status;
  int status;   // of a command
  bool secret;  // a value must not be shown to others
  journal_cause cause;
};

struct journal_entry {
  pid_t pid;  // the process, not the thread
  std::string comm;
  std::string interface;  // empty: none
  uint32_t request;       // 0: none
  const char* name;
  bool has_sub;
  uint16_t sub;
  const char* object;  // name of the sub-command; null: unknown
  uint16_t length;     // as announced by the caller
  bool has_text;
  std::string text;
  std::string bytes;  // an object's record as the caller sent it; empty: none
  std::vector<std::pair<std::string, std::string>> decoded;  // further members
  int result;                                                // 0 or a negative errno
  bool injected;
  int delay_ms;
  journal_cause cause;
};

// Microseconds of the monotonic clock.
int64_t journal_now_us();

// Opens the box's file. COPY_FD is used, but not owned.
[[nodiscard]] bool journal_open(journal& j, int copy_fd, int64_t start_us);

// The entry's line, newline included.
// TIME_US is real time since the start, BOX_US the box's time.
std::string journal_line(const journal_entry& entry, uint64_t sequence, int64_t time_us,
                         int64_t box_us);
std::string journal_line(const journal_effect& effect, uint64_t sequence, int64_t time_us,
                         int64_t box_us);

void journal_append(journal& j, const journal_entry& entry, int64_t box_us);
void journal_append(journal& j, const journal_effect& effect, int64_t box_us);
