// Completion of gwbox's command line. The shell's script asks gwbox itself ("gwbox complete --
// WORD...") what the last word may become, so that boxes and stations that have just come are
// known.
//
// An offer is a word; one that ends in "=" or "@" goes on. Two say that the shell knows better:
#pragma once

#include <string>
#include <vector>

constexpr const char* kCompleteFiles = ":files";      // the names of files as well
constexpr const char* kCompleteCommand = ":command";  // a command line of its own follows "--"

// What may stand for WORD, which is an option ("--board") or a positional word ("WHAT"), in the
// place after BEFORE, which stand for it already. CURRENT is what is there so far; BOX as for
// reach_root. The offers need not begin with CURRENT.
std::vector<std::string> complete_value(const std::string& word,
                                        const std::vector<std::string>& before,
                                        const std::string& current, const std::string& box);

// For "bash" or "zsh"; "" for any other shell.
std::string complete_script(const std::string& shell);

// Those that have one.
std::vector<std::string> complete_shells();

// Print the script, the offers. They return the exit status.
int complete_print_script(const std::string& shell);
int complete_print(const std::vector<std::string>& offers);
