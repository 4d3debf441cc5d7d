// The control socket of a box as its two ends see it.
//
// One message each way. A message is words with kControlBreak between them: "fail WHAT HOW COUNT",
// "fail clear", "fail list", "set WORD...", "advance SECONDS", "pause", "resume", "status". The
// answer is "ok", with a break and more after it where there is more, or what was wrong.
#pragma once

#include <sys/un.h>

#include <cstddef>
#include <string>

constexpr const char* kControlPath = "/run/gwbox/control";  // inside the box
constexpr char kControlBreak = '\x1f';
constexpr size_t kControlMessageMax = 200000;  // what a socket of this kind takes at once
constexpr int kControlPatience = 5;            // seconds that a command waits for the box
constexpr double kControlAdvanceMax = 1e9;     // seconds, at once

// Its address, for a caller who sees the box's files below ROOT. False when ROOT is too long.
[[nodiscard]] bool control_address(const std::string& root, sockaddr_un& address);

// A socket whose calls give up after kControlPatience with EAGAIN; -1 on failure.
[[nodiscard]] int control_socket();

// Says that the box kept somebody waiting for so long, and whether it has a command that it may
// still carry out; always false.
bool control_report_silence(bool sent);

// Sends a message to the box below ROOT and gets its answer. Reports what failed.
[[nodiscard]] bool control_exchange(const std::string& root, const std::string& message,
                                    std::string& answer);
