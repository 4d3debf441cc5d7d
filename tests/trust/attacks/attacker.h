#pragma once

#include <functional>

// Somebody who means it: what attacks are made from.

// The user id that owns nothing: nobody's.
inline constexpr unsigned kNobody = 65534;

// Whether processes of nobody can be had here. A box of an ordinary user has one
// user id alone; tests that need a second skip themselves there.
[[nodiscard]] bool has_other_users();

// Runs `attack` in a process of nobody's, without root's groups, and waits for
// it. Returns its exit status: what `attack` returns, or 128 + N when signal N
// ended it.
int as_nobody(const std::function<int()>& attack);

// Runs a shell command line the same way and returns its exit status.
int sh_as_nobody(const char* command);

// Starts `attack` as nobody and returns its process id at once; end it with
// end_process of support/daemon.h.
int start_as_nobody(const std::function<int()>& attack);
