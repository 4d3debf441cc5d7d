#pragma once

#include <string>
#include <vector>

// A daemon with all its work switched on, and what hostile texts must not make of
// it. The texts run the command "c", which leaves a trace; print the word FORGED at
// the begin of a line; or drive a terminal.

struct hostile_text {
  const char* name;
  std::string text;
};

// From the wire: among them line ends and texts of 8,000 bytes, which are more than
// any buffer of the daemon takes.
std::vector<hostile_text> wire_texts();

// For a line of a profile, which has no line end.
std::vector<hostile_text> profile_texts();

// Has the profiles switch everything on: companions, WPS, backhaul.
void switch_all_on();

// The same, and starts the daemon with controller and host, console and log. Returns
// when radios are up.
void start_watched_daemon();

// Fails the test when a command was run, a child died, or the console or the log
// have a control character or a forged line. Forgets what they have.
void expect_harmless(const std::string& what);

// Lines of both profiles.
std::vector<std::string> profile_lines();

// Fails the test unless the profiles have the same keys in the same order as
// `before`, and all lines but `changes` the same bytes.
void expect_lines_kept(const std::vector<std::string>& before, int changes,
                       const std::string& what);
