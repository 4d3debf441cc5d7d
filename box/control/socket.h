// The control socket of a box, through which commands speak to its first process.
//
// One message each way. A message is words with kControlBreak between them: "fail WHAT HOW COUNT",
// "fail clear", "fail list", "set WORD...", "advance SECONDS", "pause", "resume", "status". The
// answer is "ok", with a break and more after it where there is more, or what was wrong.
#pragma once

#include <string>
#include <vector>

#include "gateway/state.h"

constexpr const char* kControlPath = "/run/gwbox/control";  // inside the box
constexpr char kControlBreak = '\x1f';
constexpr int kControlPatience = 5;         // seconds that a command waits for the box
constexpr double kControlAdvanceMax = 1e9;  // seconds, at once

// Server side. Returns the listening descriptor, or -1 after a report.
[[nodiscard]] int control_listen();

// Accepts one client of LISTENER; its descriptor, or -1 when there is none after all.
int control_accept(int listener);

// Reads the client's message, does what it asks, answers and closes CLIENT.
void control_serve(int client, trap_state& trap);

// Client side. A socket whose calls give up after kControlPatience with EAGAIN; -1 on failure.
[[nodiscard]] int control_socket();

// Says that the box kept somebody waiting for so long, and whether it has a command that it may
// still carry out; always false.
bool control_report_silence(bool sent);

// Client side. BOX as for reach_root. Sends the words and gets what follows the "ok"; reports
// anything else. Returns the exit status: 0, kExitFailed without a box, kExitUsage when the box
// takes the words for wrong.
[[nodiscard]] int control_ask(const std::string& box, const std::vector<std::string>& words,
                              std::string& answer);

// The same for commands without an answer that anybody reads.
int control_tell(const std::string& box, const std::vector<std::string>& words);
