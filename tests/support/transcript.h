#pragma once

#include <string>

// Terminal sessions kept as text: each command on its own line after "$ ", followed by what it
// prints on both streams.

// Runs each command of a session in a shell and returns the session with today's output. If
// `with_status`, "[STATUS]" follows the output of a command that fails.
std::string replay(const std::string& session, bool with_status);

// The session without what varies between runs: times, durations, pids, memory addresses.
std::string masked(const std::string& session);
