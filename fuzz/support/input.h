#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A fuzz input as a scenario: records, each of a type byte, a length of two bytes, the
// low one first, and that many bytes. A record that the input's end cuts off gets what
// is left. Type bytes count modulo the number of types, so any input is a scenario.

enum class record_type : uint8_t {
  kCall,      // to the target, which defines what the bytes mean
  kDatagram,  // to the service as it is
  kDriver,    // what the driver answers next: outcome, bytes
  kCommand,   // what the next shell command does: outcome, its output
  kPeer,      // what the next companion to be asked does: outcome, its datagram
  kProfile,   // lines of a profile: which and how, text
  kWorld,     // which files are there, and the board
  kFaults,    // pairs: how many calls to files and sockets succeed, and how the next fails
  kWorker,    // the lifecycle worker runs
};
constexpr unsigned kRecordTypes = 9;

struct record {
  record_type type;
  std::string_view bytes;
};

// Takes the next record off the front; false at the end.
bool next_record(std::string_view* rest, record* out);

// The record in the form that next_record reads.
std::string make_record(record_type type, std::string_view bytes);

// Takes a byte, or a number of two or four bytes, the low one first, off the front. Missing
// bytes are zeros.
uint8_t take_byte(std::string_view* bytes);
uint16_t take_u16(std::string_view* bytes);
uint32_t take_u32(std::string_view* bytes);

// Takes `count` bytes, or as many as there are.
std::string_view take_bytes(std::string_view* bytes, size_t count);
