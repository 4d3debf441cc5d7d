// The commands' end of the control socket, see connection.h.
#pragma once

#include <string>
#include <vector>

// BOX as for reach_root. Sends WORDS and puts what follows the "ok" in ANSWER; reports any other
// answer. Returns the exit status: 0, kExitFailed if the box cannot be reached, kExitUsage if it
// rejects the words.
[[nodiscard]] int control_ask(const std::string& box, const std::vector<std::string>& words,
                              std::string& answer);

// The same for a command that may take the box so many SECONDS.
[[nodiscard]] int control_ask_patiently(const std::string& box,
                                        const std::vector<std::string>& words, int seconds,
                                        std::string& answer);

// The same for commands that need no more than the "ok".
int control_tell(const std::string& box, const std::vector<std::string>& words);
