#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// A stand-in for the home network controller's listener that can answer any bytes, and
// hand-made datagrams.

// Binds the listener's address and answers every request with 2860 zeros.
void start_listener();

// From now on, answers every request with these bytes.
void listener_answers(const std::string& bytes);

// From now on, answers each request with what the function returns.
void listener_asks(const std::function<std::string(const std::string& request)>& answer);

// Stops answering, but still records the requests.
void listener_is_silent();

// The requests so far, in order, and the ports they came from.
std::vector<std::string> listener_requests();
std::vector<uint16_t> listener_ports();
std::string last_listener_request();

// Sends unsolicited bytes to a client's port.
void listener_sends(uint16_t port, const std::string& bytes);

// A request: type, key, index, value.
std::string hnc_request_bytes(uint32_t type, const std::string& key, uint32_t index,
                              const std::string& value);

std::string hnc_reply_bytes(const std::string& value, int32_t table_error = 0);

// A number as these datagrams and the driver's records have it.
std::string little_endian(uint32_t value);
