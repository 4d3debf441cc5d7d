// The output of --help, for the program and for each command.
#pragma once

#include <span>
#include <string>

#include "commands/command.h"

std::string help_text(std::span<const command_row* const> commands);

std::string help_of(const command_row& command);
