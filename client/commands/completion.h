// Completion scripts: every word that they offer stands in them, so that a Tab
// runs neither this program nor a call.
#pragma once

#include <string>

// For "bash" or "zsh"; "" for any other shell.
std::string completion_script(const std::string& shell);
