#pragma once

#include <string>
#include <vector>

// A daemon with everything switched on, and checks that hostile texts did no harm. The
// texts run the command "c", which leaves a trace, or print the word FORGED at the
// beginning of a line, or send control sequences to a terminal.

struct hostile_text {
  const char* name;
  std::string text;
};

// For the wire: also line ends, and texts of 8,000 bytes, more than any buffer of the
// daemon holds.
std::vector<hostile_text> wire_texts();

// For a profile line, so without line ends.
std::vector<hostile_text> profile_texts();

// Switches everything on in the profiles: companions, WPS, backhaul.
void switch_all_on();

// The same, and starts the daemon with controller, host, console and log. Returns when
// the radios are up.
void start_watched_daemon();

// Fails the test when a command was run, a child died, or the console or the log has a
// control character or a forged line. Empties the console and the log.
void expect_harmless(const std::string& what);

// The lines of both profiles.
std::vector<std::string> profile_lines();

// Fails the test unless the profiles have the same keys in the same order as `before`,
// and at most `changes` lines differ.
void expect_lines_kept(const std::vector<std::string>& before, int changes,
                       const std::string& what);
