// Waiting for what other processes do, and reading what they recorded.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Asks every few milliseconds until CONDITION holds; false when it did not within three seconds.
bool wait_until(const std::function<bool()>& condition);

// The lines of a record file, parsed; none when there is no file. A line that is no JSON object is
// a failure of the running test.
std::vector<nlohmann::json> records(const std::string& path);

// Waits until the file has COUNT lines or more and returns them all.
std::vector<nlohmann::json> await_records(const std::string& path, size_t count);

// Makes the file anew.
void write_file(const std::string& path, const std::string& text);
std::string read_file(const std::string& path);

// Puts that under "companions" of the box's scenario file.
void tell_companions(const nlohmann::json& companions);

// A UNIX datagram socket, bound to an address of its own and connected to PATH; waits until there
// is somebody. -1 when nobody came.
int connect_datagram(const std::string& path);

// One request and the answer to it, "" when none comes within SECONDS.
std::string ask(int fd, const std::string& request, double seconds = 3);
