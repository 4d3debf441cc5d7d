// Messages to the user: one line on standard error that begins with "gwbox: ", folded where it is a
// terminal.
#pragma once

// gwbox's own exit statuses. kExitBoxFailed: `gwbox run` could not make the box. 126, 127 and
// 128+N are COMMAND's.
constexpr int kExitBoxFailed = 125;
// Other commands: there is no box, or the request failed.
constexpr int kExitFailed = 1;
// Wrong usage, or a wrong scenario.
constexpr int kExitUsage = 2;

// Says FORMAT, then a newline.
[[gnu::format(printf, 1, 2)]] void report(const char* format, ...);

// Says "cannot FORMAT: <text of the current errno>" and, when HINT is not null, " (HINT)".
// Always false, so that a step can end with `return report_errno(...)`.
[[gnu::format(printf, 2, 3)]] bool report_errno(const char* hint, const char* format, ...);
