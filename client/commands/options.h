// The command line: options, then PROCEDURE, then words that are its own.
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
  bool raw = false;                // the result's bytes, undecoded
  bool force = false;              // arguments that make no sense are sent all the same
  bool inert_ok = false;           // a procedure that does nothing is a success
  std::vector<std::string> words;  // PROCEDURE and what follows, verbatim
  // What may stand for PROCEDURE besides: not given, but known to who reads the words.
  std::span<const command_row* const> commands;
};

enum class options_outcome { kRun, kHelp, kVersion, kError };

// `arguments` are those of the program, without its name. kError: `error` is
// one line, and `json` is true when --json is anywhere. From PROCEDURE on nothing is an option, so
// -5 is an argument.
options_outcome options_parse(const std::vector<std::string>& arguments, client_options& options,
                              std::string& error);
