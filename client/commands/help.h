// What --help prints, of the program and of each of its commands.
#pragma once

#include <string>
#include <string_view>

std::string help_text();

// Usage and meaning of one command; "" when there is no such command.
std::string help_of(std::string_view command);
