#include "diag/trace.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

static constexpr char kConsoleSwitch[] = "/tmp/wlandbg";
static constexpr char kLogSwitch[] = "/tmp/auto_debug/rpc_dbg_en";
static constexpr char kLog[] = "/tmp/auto_debug/dbg_rpc.log";
static constexpr char kLogBackup[] = "/tmp/auto_debug/dbg_rpc.log.bak";
static constexpr int32_t kRotateAbove = 1024000;

bool console_trace_on() {
  return access(kConsoleSwitch, F_OK) == 0;
}

void log_time_stamp(const struct tm* when, char (&stamp)[kTimeStampSize]) {
  char text[64] = {};
  const bool formatted = when != nullptr && asctime_r(when, text) != nullptr;
  const size_t length = formatted ? strlen(text) : 0;
  if (length < 2 || length > kTimeStampSize) {
    strcpy(stamp, "NULL");
    return;
  }
  memcpy(stamp, text, length - 1);
  stamp[length - 1] = '\0';
}

static void rotate_log() {
  struct stat status;
  if (stat(kLog, &status) != 0) return;
  if (static_cast<int32_t>(status.st_size) > kRotateAbove) rename(kLog, kLogBackup);
}

static int append_to_log(const char* format, va_list values) {
  if (access(kLogSwitch, F_OK) != 0) return 0;
  if (format == nullptr) return -1;
  rotate_log();
  FILE* log = fopen(kLog, "a+e");
  if (log == nullptr) return -1;
  const time_t now = time(nullptr);
  struct tm local;
  char stamp[kTimeStampSize];
  log_time_stamp(localtime_r(&now, &local), stamp);
  fprintf(log, "%s - ", stamp);
  vfprintf(log, format, values);
  fclose(log);
  return 0;
}

int logToFile(const char* format, ...) {
  va_list values;
  va_start(values, format);
  const int status = append_to_log(format, values);
  va_end(values);
  return status;
}

// The stream is locked so that prefix and message stay together when two
// threads trace at once.
__attribute__((format(printf, 3, 0))) static void write_console(FILE* stream, const char* prefix,
                                                                const char* format,
                                                                va_list values) {
  flockfile(stream);
  fputs(prefix, stream);
  vfprintf(stream, format, values);
  funlockfile(stream);
}

static constexpr size_t kPrefixSize = 160;

void trace_rpc(const char* function, const char* format, ...) {
  va_list values;
  va_start(values, format);
  if (console_trace_on()) {
    char prefix[kPrefixSize];
    snprintf(prefix, sizeof prefix, "\033[1;32;40m[RPC] %s\033[0m ", function);
    va_list again;
    va_copy(again, values);
    write_console(stdout, prefix, format, again);
    va_end(again);
  }
  append_to_log(format, values);
  va_end(values);
}

void trace_rpc_error(const char* function, const char* format, ...) {
  char prefix[kPrefixSize];
  snprintf(prefix, sizeof prefix, "\033[1;31;40m[RPC] **ERROR**\033[0m %s ", function);
  va_list values;
  va_list again;
  va_start(values, format);
  va_copy(again, values);
  write_console(stderr, prefix, format, again);
  va_end(again);
  append_to_log(format, values);
  va_end(values);
}

void trace_rev(const char* function, const char* format, ...) {
  if (!console_trace_on()) return;
  char prefix[kPrefixSize];
  snprintf(prefix, sizeof prefix, "[REV-RPC] \033[40m\033[31;40m%s\033[0m ", function);
  va_list values;
  va_start(values, format);
  write_console(stdout, prefix, format, values);
  va_end(values);
}

void trace_rev_error(const char* function, const char* format, ...) {
  char prefix[kPrefixSize];
  snprintf(prefix, sizeof prefix, "[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m %s ", function);
  va_list values;
  va_start(values, format);
  write_console(stderr, prefix, format, values);
  va_end(values);
}
