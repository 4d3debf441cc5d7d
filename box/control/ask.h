// The commands' side of the control socket, see connection.h.
#pragma once

#include <string>
#include <vector>

// BOX as for reach_root. Sends the words and gets what follows the "ok"; reports anything else.
// Returns the exit status: 0, kExitFailed without a box, kExitUsage when the box takes the words
// for wrong.
[[nodiscard]] int control_ask(const std::string& box, const std::vector<std::string>& words,
                              std::string& answer);

// The same for commands without an answer that anybody reads.
int control_tell(const std::string& box, const std::vector<std::string>& words);
