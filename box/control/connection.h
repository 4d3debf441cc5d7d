// The control socket of a box, for both ends.
//
// One message each way. A message is words with kControlBreak between them: "fail WHAT HOW COUNT",
// "fail clear", "fail list", "set WORD...", "advance SECONDS", "pause", "resume", "status",
// "pending", "wait SECONDS CONDITION...". The answer is "ok", or "ok", a break and what was asked
// for, or else what was wrong. That to "wait" comes when the condition holds, or after the time,
// and then has what is missing.
#pragma once

#include <sys/un.h>

#include <cstddef>
#include <string>

constexpr const char* kControlPath = "/run/gwbox/control";  // inside the box
constexpr char kControlBreak = '\x1f';
constexpr size_t kControlMessageMax = 200000;  // what such a socket takes in one message
constexpr int kControlPatience = 5;            // seconds that a command waits for the box
constexpr int kControlWaitMax = 86400;         // seconds
constexpr double kControlAdvanceMax = 1e9;     // seconds in one message

// The socket's address for a caller that sees the box's files under ROOT. False when ROOT is too
// long.
[[nodiscard]] bool control_address(const std::string& root, sockaddr_un& address);

// A socket whose calls fail with EAGAIN after kControlPatience and MORE seconds; -1 on failure.
[[nodiscard]] int control_socket(int more);

// Reports that the box has not answered for so long. SENT: it has the command and may still carry
// it out. Always false.
bool control_report_silence(bool sent);

// Sends a message to the box under ROOT and gets its answer, which may take MORE seconds than
// kControlPatience. Reports what failed.
[[nodiscard]] bool control_exchange(const std::string& root, const std::string& message, int more,
                                    std::string& answer);
