#pragma once

#include <string>
#include <string_view>
#include <vector>

// Profiles as the checks see them: written again from what a profile is, with
// nothing of the store's own code.

// A profile with every key that an operation reads or writes.
extern const char kUsualProfile[];

// `profile` with each "Key=Value" line of `lines` in the place of the first line
// of that key, or at the end.
std::string profile_with(const std::string& profile, std::string_view lines);

// The lines, each with its line end, in pieces of at most 1727 characters.
std::vector<std::string_view> profile_pieces(std::string_view profile);

// What an update did wrong: "" for new content that differs from the old in
// values only, but for one line that a forced update may add.
std::string profile_objection(std::string_view old_content, std::string_view new_content);
