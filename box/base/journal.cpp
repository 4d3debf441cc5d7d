#include "base/journal.h"

#include <fcntl.h>
#include <time.h>
#include <unistd.h>
#include <cstdio>
#include <cstring>

#include "base/report.h"
#include "client/base/text.h"

// Appends the text as a JSON string; returns false when bytes had to be replaced.
static bool append_string(std::string& line, const std::string& text) {
  bool faithful = true;
  line += '"';
  for (size_t i = 0; i < text.size();) {
    uint32_t character = 0;
    size_t length = text_decode(text, i, &character);
    char escaped[8];
    if (length == 0) {
      line += "\\ufffd";
      faithful = false;
    } else if (character < 0x20 || character == 0x7F) {
      snprintf(escaped, sizeof escaped, "\\u%04x", character);
      line += escaped;
    } else {
      if (character == '"' || character == '\\') line += '\\';
      line.append(text, i, length);
    }
    i += length ? length : 1;
  }
  line += '"';
  return faithful;
}

static void append_member(std::string& line, const char* name, const std::string& text) {
  line += std::string(",\"") + name + "\":";
  append_string(line, text);
}

static void append_number(std::string& line, const char* name, long long number) {
  line += std::string(",\"") + name + "\":" + std::to_string(number);
}

static std::string hex(unsigned number) {
  char text[16];
  snprintf(text, sizeof text, "0x%04X", number);
  return text;
}

static void append_text(std::string& line, const std::string& text) {
  line += ",\"text\":";
  if (!append_string(line, text)) append_member(line, "text_hex", text_hex(text));
}

static std::string seconds(int64_t us) {
  char text[32];
  snprintf(text, sizeof text, "%lld.%06lld", static_cast<long long>(us / 1000000),
           static_cast<long long>(us % 1000000));
  return text;
}

// What all lines begin with.
static std::string line_head(uint64_t sequence, int64_t time_us, int64_t box_us) {
  return "{\"seq\":" + std::to_string(sequence) + ",\"time\":" + seconds(time_us) +
         ",\"box_time\":" + seconds(box_us);
}

static void append_cause(std::string& line, const journal_cause& cause) {
  if (cause.call.empty()) return;
  append_member(line, "call", cause.call);
  append_member(line, "xid", hex(cause.xid));
  if (cause.queued) line += ",\"queued\":true";
}

std::string journal_line(const journal_entry& entry, uint64_t sequence, int64_t time_us,
                         int64_t box_us) {
  std::string line = line_head(sequence, time_us, box_us);
  append_number(line, "pid", entry.pid);
  append_member(line, "comm", entry.comm);
  if (entry.request != 0 || !entry.interface.empty()) {
    append_member(line, "interface", entry.interface);
  }
  if (entry.request != 0) append_member(line, "request", hex(entry.request));
  append_member(line, "name", entry.name);
  if (entry.has_sub) append_member(line, "sub", hex(entry.sub));
  if (entry.object) append_member(line, "object", entry.object);
  append_number(line, "length", entry.length);
  for (const auto& [name, value] : entry.decoded)
    append_member(line, name.c_str(), value);
  if (!entry.bytes.empty()) append_member(line, "bytes", text_hex(entry.bytes));
  if (entry.has_text) append_text(line, entry.text);
  append_number(line, "result", entry.result);
  if (entry.result < 0) {
    const char* name = strerrorname_np(-entry.result);
    append_member(line, "error", name ? name : std::to_string(-entry.result));
  }
  if (entry.injected) line += ",\"injected\":true";
  if (entry.delay_ms > 0) append_number(line, "delay_ms", entry.delay_ms);
  append_cause(line, entry.cause);
  return line + "}\n";
}

std::string journal_line(const journal_effect& effect, uint64_t sequence, int64_t time_us,
                         int64_t box_us) {
  std::string line = line_head(sequence, time_us, box_us);
  append_member(line, "effect", effect.effect);
  if (effect.pid != 0) {
    append_number(line, "pid", effect.pid);
    append_member(line, "comm", effect.comm);
  }
  if (!effect.interface.empty()) append_member(line, "interface", effect.interface);
  for (const auto& [name, value] : effect.members)
    append_member(line, name.c_str(), value);
  if (effect.has_status) append_number(line, "status", effect.status);
  if (effect.secret) line += ",\"secret\":true";
  append_cause(line, effect.cause);
  return line + "}\n";
}

int64_t journal_now_us() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000LL + now.tv_nsec / 1000;
}

bool journal_open(journal& j, int copy_fd, int64_t start_us) {
  j = {};
  j.copy_fd = copy_fd;
  j.start_us = start_us;
  j.fd = open(kJournalPath, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  return j.fd >= 0 || report_errno(nullptr, "open %s", kJournalPath);
}

// Exchanges the files in one step, so that there is always a journal to open.
static bool journal_rotate(journal& j) {
  unlink(kJournalOlderPath);
  int fd = open(kJournalOlderPath, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) return report_errno(nullptr, "open %s", kJournalOlderPath);
  if (renameat2(AT_FDCWD, kJournalOlderPath, AT_FDCWD, kJournalPath, RENAME_EXCHANGE) < 0) {
    close(fd);
    return report_errno(nullptr, "rename %s", kJournalPath);
  }
  close(j.fd);
  j.fd = fd;
  return true;
}

static void append_line(journal& j, const std::string& line) {
  // If the exchange fails, the journal may grow by its limit once more.
  if (j.size + line.size() > kJournalLimit) {
    static_cast<void>(journal_rotate(j));
    j.size = 0;
  }
  j.size += line.size();
  for (int fd : {j.fd, j.copy_fd}) {
    if (fd >= 0 && write(fd, line.data(), line.size()) < 0) {
      report_errno(nullptr, "write the journal");
    }
  }
}

void journal_append(journal& j, const journal_entry& entry, int64_t box_us) {
  append_line(j, journal_line(entry, ++j.sequence, journal_now_us() - j.start_us, box_us));
}

void journal_append(journal& j, const journal_effect& effect, int64_t box_us) {
  append_line(j, journal_line(effect, ++j.sequence, journal_now_us() - j.start_us, box_us));
}
