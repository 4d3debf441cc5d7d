// The command line: options, then PROCEDURE, then its words.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct command_row;

struct client_options {
  std::string host = "192.168.254.254";
  uint16_t port = 60001;
  double timeout = 10;  // seconds
  bool json = false;
  bool raw = false;                // print the result's bytes undecoded
  bool force = false;              // send arguments even if they make no sense
  bool inert_ok = false;           // a procedure that does nothing counts as a success
  std::vector<std::string> words;  // PROCEDURE and the words after it, verbatim
  // Set by the program, not by an option: commands accepted in place of PROCEDURE.
  std::span<const command_row* const> commands;
};

enum class options_outcome { kRun, kHelp, kVersion, kError };

// `arguments` are without the program's name. kError: `error` is one line, and `json` is true
// if --json appears anywhere. Nothing after PROCEDURE is an option, so -5 is an argument.
options_outcome options_parse(const std::vector<std::string>& arguments, client_options& options,
                              std::string& error);
