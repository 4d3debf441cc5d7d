#pragma once

#include <string>

// What the tests of the lifecycle's steps share.

// From here on a stand-in for the shell notes every command line and runs none;
// it prints `answer` for each.
void note_commands(const std::string& answer = "");

// The command lines noted so far, a line each; forgotten with this call.
std::string commands();

// Makes the board one with an MT7615, or with neither it nor a 5 GHz chip;
// before the first probe.
void pretend_mt7615();
void pretend_single_band();
