#pragma once

#include <ctime>

// Diagnostics: four trace families and the debug log. Two marker files decide what is
// written. Both are checked at every message, so changes take effect at once:
//
//   /tmp/wlandbg                  console traces on standard output
//   /tmp/auto_debug/rpc_dbg_en    /tmp/auto_debug/dbg_rpc.log, one backup
//
// Each family prefixes the name of the calling function; the message brings its own
// newline. Control characters in its texts are written in hexadecimal, see message.h.
//
//   family     stream   console gate   copied to the log
//   RPC_TRACE  stdout   /tmp/wlandbg   yes, regardless of the console
//   RPC_ERROR  stderr   none           yes
//   REV_TRACE  stdout   /tmp/wlandbg   no
//   REV_ERROR  stderr   none           no

#define RPC_TRACE(...) trace_rpc(__func__, __VA_ARGS__)
#define RPC_ERROR(...) trace_rpc_error(__func__, __VA_ARGS__)
#define REV_TRACE(...) trace_rev(__func__, __VA_ARGS__)
#define REV_ERROR(...) trace_rev_error(__func__, __VA_ARGS__)

// trace_rpc returns logToFile's status for the copy in the log.
int trace_rpc(const char* function, const char* format, ...) __attribute__((format(printf, 2, 3)));
void trace_rpc_error(const char* function, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
void trace_rev(const char* function, const char* format, ...) __attribute__((format(printf, 2, 3)));
void trace_rev_error(const char* function, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

[[nodiscard]] bool console_trace_on();

// Appends "<time stamp> - <message>" to the debug log. A log of more than 1,024,000 bytes
// is first renamed to its backup, or truncated, with one complaint on standard error,
// when that fails. Returns 0 when logging is off or the message was written; -1 when
// format is null or the log is not our own (see own_file.h), which is also reported there
// once. Only the owner may read a new log: it contains pass phrases. The log's directory
// is never created.
int logToFile(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The log's time stamp: asctime's text without its newline, or "NULL" when the time
// cannot be formatted (a null pointer, a year out of range).
constexpr unsigned long kTimeStampSize = 26;
void log_time_stamp(const struct tm* when, char (&stamp)[kTimeStampSize]);
