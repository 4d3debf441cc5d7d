// What --help prints, of the program and of each of its commands.
#pragma once

#include <span>
#include <string>

#include "commands/command.h"

std::string help_text(std::span<const command_row* const> commands);

// Usage and meaning of one command.
std::string help_of(const command_row& command);
