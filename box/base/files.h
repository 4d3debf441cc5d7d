// Small file functions. Those that return bool report failures.
#pragma once

#include <string>

// The whole file, or "" when it cannot be read (not reported). A FIFO without a writer is empty.
std::string file_read(const std::string& path);

// Its first bytes, SIZE at most.
std::string file_read_piece(const std::string& path, size_t size);

// Creates the file with mode 0644, or overwrites it.
[[nodiscard]] bool file_write(const std::string& path, const std::string& text);

// Creates the directory and its parents; existing ones are fine.
[[nodiscard]] bool directory_make(const std::string& path);

// "/a/b" of "/a/b/c", "/" of "/a".
std::string path_parent(const std::string& path);
