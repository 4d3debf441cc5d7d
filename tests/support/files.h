#pragma once

#include <functional>
#include <string>

// Files and waiting, for tests.

// The whole file; empty when there is none.
std::string read_file(const std::string& path);

// Writes a file whole, creating or truncating it. Fails the test when it cannot.
void write_file(const std::string& path, const std::string& text);

[[nodiscard]] bool exists(const std::string& path);

// Waits for a condition; false when it has not come true after `seconds`.
[[nodiscard]] bool wait_until(const std::function<bool()>& condition, double seconds = 4.0);

// What the shell command line prints on standard output; its status in *status.
std::string run(const std::string& command, int* status = nullptr);

// Standard output (1) or standard error (2) of this process, caught in a file
// between the two calls.
void catch_stream(int stream);
std::string caught_stream(int stream);
