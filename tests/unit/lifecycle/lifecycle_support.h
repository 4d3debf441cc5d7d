#pragma once

#include <sys/types.h>

#include <string>

// Shared by the tests of the lifecycle.

// From now on a stand-in for the shell records every command line, prints `answer` and
// runs nothing.
void note_commands(const std::string& answer = "");

// Returns the recorded command lines, one per line, and clears them.
std::string commands();

// A command line that contains `part` does not end before release_command().
// wait_for_held_command() returns whether one has come.
void hold_command(const std::string& part);
[[nodiscard]] bool wait_for_held_command();
void release_command();

// Whether a thread of this process blocks on a lock or a condition in time.
[[nodiscard]] bool wait_until_blocked(pid_t thread);

// Makes the board look like one with an MT7615, or like one with neither an MT7615 nor a
// 5 GHz chip. Call it before the first probe.
void pretend_mt7615();
void pretend_single_band();

// Whether the text contains the parts in this order.
[[nodiscard]] bool in_order(const std::string& text, std::initializer_list<std::string> parts);
