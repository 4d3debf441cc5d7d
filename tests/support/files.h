#pragma once

#include <functional>
#include <string>

// The whole file; empty if there is none.
std::string read_file(const std::string& path);

// Creates or overwrites a file. Fails the test if it cannot.
void write_file(const std::string& path, const std::string& text);

[[nodiscard]] bool exists(const std::string& path);

// Waits for a condition; false if it is not true after `seconds`.
[[nodiscard]] bool wait_until(const std::function<bool()>& condition, double seconds = 4.0);

// The standard output of a shell command line; its status in *status.
std::string run(const std::string& command, int* status = nullptr);

// How often a text contains another.
int count_of(const std::string& text, const std::string& part);

// Redirects standard output (1) or standard error (2) of this process to a file, from the first
// call to the second.
void catch_stream(int stream);
std::string caught_stream(int stream);
