// Small file functions. Those that return bool report their failure.
#pragma once

#include <string>

// The whole file, or "" when it cannot be read (not reported).
std::string file_read(const std::string& path);

// Makes or replaces the file, mode 0644.
[[nodiscard]] bool file_write(const std::string& path, const std::string& text);

// Makes the directory and those above it; existing ones are fine.
[[nodiscard]] bool directory_make(const std::string& path);

// "/a/b" of "/a/b/c", "/" of "/a".
std::string path_parent(const std::string& path);
