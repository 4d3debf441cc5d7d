// Messages to the user: one line on standard error that begins with "gwbox: ", wrapped on a
// terminal.
#pragma once

// gwbox's own exit statuses. kExitBoxFailed: `gwbox run` could not create the box. 126, 127 and
// 128+N come from COMMAND.
constexpr int kExitBoxFailed = 125;
// Other commands: there is no box, or the request failed.
constexpr int kExitFailed = 1;
// Wrong usage, or a wrong scenario.
constexpr int kExitUsage = 2;

// Prints FORMAT as such a line.
[[gnu::format(printf, 1, 2)]] void report(const char* format, ...);

// Prints "cannot FORMAT: <text of the current errno>" and, unless HINT is null, " (HINT)".
// Always false, so that a step can end with `return report_errno(...)`.
[[gnu::format(printf, 2, 3)]] bool report_errno(const char* hint, const char* format, ...);
