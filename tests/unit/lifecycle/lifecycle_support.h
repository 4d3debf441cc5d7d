#pragma once

#include <sys/types.h>

#include <string>

// What the tests of the lifecycle's steps share.

// From here on a stand-in for the shell notes every command line and runs none;
// it prints `answer` for each.
void note_commands(const std::string& answer = "");

// The command lines noted so far, a line each; forgotten with this call.
std::string commands();

// A command line that contains the part does not end before the release. The
// wait tells whether one has come so far.
void hold_command(const std::string& part);
[[nodiscard]] bool wait_for_held_command();
void release_command();

// Whether a thread of this process comes to wait for a lock or a condition.
[[nodiscard]] bool wait_until_blocked(pid_t thread);

// Makes the board one with an MT7615, or with neither it nor a 5 GHz chip;
// before the first probe.
void pretend_mt7615();
void pretend_single_band();

// Whether the parts stand in the text one after the other.
[[nodiscard]] bool in_order(const std::string& text, std::initializer_list<std::string> parts);
