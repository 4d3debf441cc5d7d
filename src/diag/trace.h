#pragma once

#include <ctime>

// Diagnostics: four trace families and the debug log. Two marker files decide
// what is written, and both are tested afresh at every message, so that they
// take effect without restarting the daemon:
//
//   /tmp/wlandbg                  console traces on standard output
//   /tmp/auto_debug/rpc_dbg_en    /tmp/auto_debug/dbg_rpc.log, one backup
//
// Each family prefixes the name of the function that emits the message; the
// message carries its own line end. Texts in a message are shown as message.h says:
// a control character in one is written in hexadecimal.
//
//   family     stream   console gate   copied to the log
//   RPC_TRACE  stdout   /tmp/wlandbg   yes, whatever the console does
//   RPC_ERROR  stderr   none           yes
//   REV_TRACE  stdout   /tmp/wlandbg   no
//   REV_ERROR  stderr   none           no

#define RPC_TRACE(...) trace_rpc(__func__, __VA_ARGS__)
#define RPC_ERROR(...) trace_rpc_error(__func__, __VA_ARGS__)
#define REV_TRACE(...) trace_rev(__func__, __VA_ARGS__)
#define REV_ERROR(...) trace_rev_error(__func__, __VA_ARGS__)

// trace_rpc returns what became of the copy in the log, as logToFile does.
int trace_rpc(const char* function, const char* format, ...) __attribute__((format(printf, 2, 3)));
void trace_rpc_error(const char* function, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
void trace_rev(const char* function, const char* format, ...) __attribute__((format(printf, 2, 3)));
void trace_rev_error(const char* function, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// Whether console traces are on now.
[[nodiscard]] bool console_trace_on();

// Appends "<time stamp> - <message>" to the debug log, rotating a log of more
// than 1,024,000 bytes into its backup first; where it cannot be renamed it is cut
// off, and standard error told once. Returns 0 when logging is off or the message
// was written, -1 when format is null or the log is none of our own, see own_file.h,
// which standard error is told once too. A new log is for its owner alone: it holds
// pass phrases. The directory of the log is never created.
int logToFile(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The log's time stamp: asctime's text without its line end, or "NULL" when
// the time cannot be formatted (a null pointer, a year out of range).
constexpr unsigned long kTimeStampSize = 26;
void log_time_stamp(const struct tm* when, char (&stamp)[kTimeStampSize]);
