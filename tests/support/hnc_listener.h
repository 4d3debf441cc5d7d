#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// A stand-in for the home network controller's listener that answers with any
// bytes, and its datagrams, made by hand.

// Binds the listener's address and answers every request with 2860 zeros.
void start_listener();

// What it answers from now on, whatever it is asked.
void listener_answers(const std::string& bytes);

// From now on: called with each request; what it returns is answered.
void listener_asks(const std::function<std::string(const std::string& request)>& answer);

// It answers no more, but takes note of what it is asked.
void listener_is_silent();

// The requests that have come, in their order, and the ports that they came from.
std::vector<std::string> listener_requests();
std::vector<uint16_t> listener_ports();
std::string last_listener_request();

// Sends bytes to a port of a client, unasked.
void listener_sends(uint16_t port, const std::string& bytes);

// A request: type, key, index, value.
std::string hnc_request_bytes(uint32_t type, const std::string& key, uint32_t index,
                              const std::string& value);

// A reply with that value and table error.
std::string hnc_reply_bytes(const std::string& value, int32_t table_error = 0);

// A number as it stands in them.
std::string little_endian(uint32_t value);
