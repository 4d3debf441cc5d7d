// Shared by the files of the command line. Only they include CLI11, which throws exceptions; they
// catch all of them.
#pragma once

#include <CLI/CLI.hpp>
#include <vector>

#include "commands/line.h"

// Declares the commands and the options, whose values go into A.
void args_declare(CLI::App& app, args& a);

// The subcommands of APP, without the hidden ones.
std::vector<const CLI::App*> args_commands(const CLI::App& app);
