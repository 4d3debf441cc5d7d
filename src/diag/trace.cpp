#include "diag/trace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "diag/message.h"

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

// Everybody may write to the directory: another file that a link names is not
// written to, and a FIFO does not hold the daemon up.
static FILE* open_log() {
  constexpr int kFlags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int file = open(kLog, kFlags, 0666);
  if (file < 0) return nullptr;
  struct stat status;
  FILE* log = nullptr;
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) log = fdopen(file, "a+");
  if (log == nullptr) close(file);
  return log;
}

[[gnu::format(printf, 1, 0)]] static int append_to_log(const char* format, va_list values) {
  if (access(kLogSwitch, F_OK) != 0) return 0;
  if (format == nullptr) return -1;
  rotate_log();
  FILE* log = open_log();
  if (log == nullptr) return -1;
  const time_t now = time(nullptr);
  struct tm local;
  char stamp[kTimeStampSize];
  log_time_stamp(localtime_r(&now, &local), stamp);
  fprintf(log, "%s - ", stamp);
  write_message(log, format, values);
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

namespace {

// A trace family: its prefix has one %s, the emitting function.
struct family {
  const char* prefix;
  bool error;   // standard error, always; else standard output, while it is switched on
  bool logged;  // copied to the debug log
};

constexpr family kRpc = {"\033[1;32;40m[RPC] %s\033[0m ", false, true};
constexpr family kRpcError = {"\033[1;31;40m[RPC] **ERROR**\033[0m %s ", true, true};
constexpr family kRev = {"[REV-RPC] \033[40m\033[31;40m%s\033[0m ", false, false};
constexpr family kRevError = {"[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m %s ", true, false};

}  // namespace

// The families' prefixes are formats of their own.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

// The stream is locked so that prefix and message stay together when two
// threads trace at once.
static void write_console(const family& kind, const char* function, const char* format,
                          va_list values) {
  FILE* stream = kind.error ? stderr : stdout;
  flockfile(stream);
  fprintf(stream, kind.prefix, function);
  write_message(stream, format, values);
  funlockfile(stream);
}

// Returns logToFile's status of the copy, 0 where there is none.
static int emit(const family& kind, const char* function, const char* format, va_list values) {
  if (kind.error || console_trace_on()) {
    va_list again;
    va_copy(again, values);
    write_console(kind, function, format, again);
    va_end(again);
  }
  return kind.logged ? append_to_log(format, values) : 0;
}

int trace_rpc(const char* function, const char* format, ...) {
  va_list values;
  va_start(values, format);
  const int logged = emit(kRpc, function, format, values);
  va_end(values);
  return logged;
}

void trace_rpc_error(const char* function, const char* format, ...) {
  va_list values;
  va_start(values, format);
  emit(kRpcError, function, format, values);
  va_end(values);
}

void trace_rev(const char* function, const char* format, ...) {
  va_list values;
  va_start(values, format);
  emit(kRev, function, format, values);
  va_end(values);
}

void trace_rev_error(const char* function, const char* format, ...) {
  va_list values;
  va_start(values, format);
  emit(kRevError, function, format, values);
  va_end(values);
}
