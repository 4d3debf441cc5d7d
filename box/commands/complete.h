// Completion of gwbox's command line. The shell's script asks gwbox itself ("gwbox complete --
// WORD...") what the last word may become, so that it knows the boxes and stations of the moment.
//
// An offer is a word; one that ends in "=" or "@" needs more after it. Two offers stand for what
// the shell completes itself:
#pragma once

#include <string>
#include <vector>

constexpr const char* kCompleteFiles = ":files";      // file names
constexpr const char* kCompleteCommand = ":command";  // the command line after "--"

// Offers for WORD, an option ("--board") or a positional argument ("WHAT"). BEFORE: the positional
// arguments already given; CURRENT: what has been typed of this one; BOX as for reach_root. The
// offers need not begin with CURRENT.
std::vector<std::string> complete_value(const std::string& word,
                                        const std::vector<std::string>& before,
                                        const std::string& current, const std::string& box);

// The script for "bash" or "zsh"; "" for any other shell.
std::string complete_script(const std::string& shell);

// The shells that have a script.
std::vector<std::string> complete_shells();

// These print the script and the offers, and return the exit status.
int complete_print_script(const std::string& shell);
int complete_print(const std::vector<std::string>& offers);
