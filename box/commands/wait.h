// `gwbox wait`.
#pragma once

#include <string>
#include <vector>

// WORDS: a condition of conditions.h, or "journal" and words NAME=VALUE or NAME!=VALUE that all
// hold for one line, which is then printed. SECONDS: how long to wait at most. BOX as for
// reach_root. Returns the exit status: 0, kExitFailed when the time is over, which is reported with
// what is missing.
int wait_run(const std::string& box, const std::vector<std::string>& words, int seconds);
