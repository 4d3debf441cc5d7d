#pragma once

#include <string>
#include <string_view>
#include <vector>

// Profiles for the checks: written independently, without any code of the store.

// A profile with every key that an operation reads or writes.
extern const char kUsualProfile[];

// `profile` with each "Key=Value" line of `lines` in place of the first line with that
// key, or at the end.
std::string profile_with(const std::string& profile, std::string_view lines);

// The lines, each with its line end, in pieces of at most 1727 characters.
std::vector<std::string_view> profile_pieces(std::string_view profile);

// What an update did wrong; "" if the new content differs from the old only in values
// and in one line that a forced update may add.
std::string profile_objection(std::string_view old_content, std::string_view new_content);
