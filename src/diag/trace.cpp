#include "diag/trace.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "diag/message.h"
#include "diag/own_file.h"

static constexpr char kConsoleSwitch[] = "/tmp/wlandbg";
static constexpr char kLogSwitch[] = "/tmp/auto_debug/rpc_dbg_en";
static constexpr char kLogDirectory[] = "/tmp/auto_debug";
static constexpr char kLog[] = "dbg_rpc.log";
static constexpr char kBackupEnd[] = ".bak";
// The log contains pass phrases.
static constexpr mode_t kLogMode = 0600;
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

// Each complaint about the debug log is printed once, so as not to flood the console.
static void complain_once(bool* said, const char* complaint) {
  if (!*said)
    fprintf(stderr, "logToFile %s/%s %s: %s\n", kLogDirectory, kLog, complaint, strerror(errno));
  *said = true;
}

// The backup is in the log's directory. If the log is a link, that is on the target
// drive.
static bool move_to_backup(int directory) {
  char log[PATH_MAX];
  char backup[sizeof log + sizeof kBackupEnd];
  if (!own_file_resolve(directory, kLog, log)) return false;
  snprintf(backup, sizeof backup, "%s%s", log, kBackupEnd);
  return renameat(directory, log, directory, backup) == 0;
}

static int open_any_log(int directory, struct stat* status) {
  return own_file_open(directory, kLog, O_RDWR | O_APPEND | O_CREAT, kLogMode, status);
}

// A log that others may have open becomes the backup, whatever its earlier name.
static int open_log(int directory, struct stat* status) {
  const int file = open_any_log(directory, status);
  if (file < 0 || !own_file_was_shared(file, kLogMode, *status)) return file;
  close(file);
  return move_to_backup(directory) ? open_any_log(directory, status) : -1;
}

// Makes room in the open log and returns the one to write to.
static int rotate_log(int directory, int file) {
  static bool said = false;
  struct stat status;
  if (move_to_backup(directory)) {
    close(file);
    return open_log(directory, &status);
  }
  complain_once(&said, "cannot be moved to its backup and is cut off");
  if (ftruncate(file, 0) == 0) return file;
  close(file);
  return -1;
}

// The log with room for one more line, or -1.
static int open_log_with_room(int directory) {
  struct stat status;
  const int file = open_log(directory, &status);
  // A size of 2 GiB or more is negative here and counts as small: kept on purpose.
  const bool full = file >= 0 && static_cast<int32_t>(status.st_size) > kRotateAbove;
  return full ? rotate_log(directory, file) : file;
}

// All steps use one open directory, even if its path is replaced meanwhile.
static int open_log_file() {
  const int directory = own_directory_open(kLogDirectory);
  if (directory < 0) return -1;
  const int file = open_log_with_room(directory);
  const int error = errno;
  close(directory);
  errno = error;
  return file;
}

static FILE* open_log_stream() {
  static bool said = false;
  const int file = open_log_file();
  FILE* log = file < 0 ? nullptr : fdopen(file, "a+");
  if (log != nullptr) return log;
  complain_once(&said, "is not written");
  if (file >= 0) close(file);
  return nullptr;
}

// One thread at a time: if two found the log full, the second would move the new log over
// the backup.
static FILE* open_log_in_turn() {
  static pthread_mutex_t turn = PTHREAD_MUTEX_INITIALIZER;
  pthread_mutex_lock(&turn);
  FILE* log = open_log_stream();
  pthread_mutex_unlock(&turn);
  return log;
}

[[gnu::format(printf, 1, 0)]] static int append_to_log(const char* format, va_list values) {
  if (access(kLogSwitch, F_OK) != 0) return 0;
  if (format == nullptr) return -1;
  FILE* log = open_log_in_turn();
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

// A trace family: its prefix has one %s, for the calling function.
struct family {
  const char* prefix;
  bool error;   // standard error, always; else standard output, if enabled
  bool logged;  // copied to the debug log
};

constexpr family kRpc = {"\033[1;32;40m[RPC] %s\033[0m ", false, true};
constexpr family kRpcError = {"\033[1;31;40m[RPC] **ERROR**\033[0m %s ", true, true};
constexpr family kRev = {"[REV-RPC] \033[40m\033[31;40m%s\033[0m ", false, false};
constexpr family kRevError = {"[REV-RPC] \033[40m\033[31;40m**ERROR**\033[0m %s ", true, false};

}  // namespace

// The prefixes are not literals at the call.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

// Locks the stream so that prefix and message stay together when two threads trace.
static void write_console(const family& kind, const char* function, const char* format,
                          va_list values) {
  FILE* stream = kind.error ? stderr : stdout;
  flockfile(stream);
  fprintf(stream, kind.prefix, function);
  write_message(stream, format, values);
  funlockfile(stream);
}

// Returns logToFile's status for the copy, 0 without one.
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
