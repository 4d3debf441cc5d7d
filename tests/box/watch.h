// Waits for what other processes do and reads what they have recorded.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Checks every few milliseconds until `condition` holds; false after three seconds.
bool wait_until(const std::function<bool()>& condition);

// The lines of a record file, parsed; none when there is no file. A line that is not a
// JSON object fails the running test.
std::vector<nlohmann::json> records(const std::string& path);

// Waits until the file has at least `count` lines and returns them all.
std::vector<nlohmann::json> await_records(const std::string& path, size_t count);

// Creates or overwrites the file.
void write_file(const std::string& path, const std::string& text);
std::string read_file(const std::string& path);

// Sets "companions" in the box's scenario file.
void tell_companions(const nlohmann::json& companions);

// A UNIX datagram socket, bound to an address of its own and connected to `path`. Waits
// until something listens there; -1 when nothing does in time.
int connect_datagram(const std::string& path);

// Sends a request and returns the answer; "" when none comes within `seconds`.
std::string ask(int fd, const std::string& request, double seconds = 3);
