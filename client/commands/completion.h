// Completion scripts. They contain every word that they offer, so pressing Tab runs neither
// this program nor a call.
#pragma once

#include <span>
#include <string>

#include "commands/command.h"

// For "bash" or "zsh"; "" for any other shell.
std::string completion_script(const std::string& shell,
                              std::span<const command_row* const> commands);
