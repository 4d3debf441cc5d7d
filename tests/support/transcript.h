#pragma once

#include <string>

// Terminal sessions kept as texts: a command behind "$ " in a line of its own,
// and below it what it prints on both streams.

// Runs the commands of a session, each in a shell, and returns the session as it
// is today. A command that exits non-zero has "[STATUS]" behind its output when
// `with_status`.
std::string replay(const std::string& session, bool with_status);

// The session without what is different each time: moments, durations, pids,
// addresses of memory.
std::string masked(const std::string& session);
