#pragma once

#include <functional>

// Runs attacks as an unprivileged user.

// The user id of "nobody", who owns nothing.
inline constexpr unsigned kNobody = 65534;

// Whether a process can run as nobody here. An ordinary user's box has one user id only;
// tests that need a second one skip themselves there.
[[nodiscard]] bool has_other_users();

// Runs `attack` in a process of nobody, without root's groups, and waits for it. Returns
// what `attack` returns, or 128 + N when signal N ended it.
int as_nobody(const std::function<int()>& attack);

// Runs a shell command line in the same way and returns its exit status.
int sh_as_nobody(const char* command);

// Starts `attack` as nobody and returns its process id at once; end it with
// end_process of support/daemon.h.
int start_as_nobody(const std::function<int()>& attack);
