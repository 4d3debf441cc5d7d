#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A fuzz input as a scenario: records, each of a type byte, a length of two
// bytes, the low one first, and so many bytes. A record that the input's end cuts
// off has what is left. Any type byte is a type, so any input is a scenario.

enum class record_type : uint8_t {
  call,      // to the target: what its bytes are is the target's business
  datagram,  // to the service as it is
  driver,    // what the driver answers next: outcome, bytes
  command,   // what the next shell command does: outcome, its output
  peer,      // what the next companion does that is asked: outcome, its datagram
  profile,   // lines of a profile: which and how, text
  world,     // which files are there, and the board
  faults,    // pairs: after so many calls to files and sockets one fails, and how
  worker,    // the lifecycle worker gets to run
};
constexpr unsigned kRecordTypes = 9;

struct record {
  record_type type;
  std::string_view bytes;
};

// Takes the next record off the front; false at the end.
bool next_record(std::string_view* rest, record* out);

// The same written.
std::string make_record(record_type type, std::string_view bytes);

// Takes a byte, or a number of two or four bytes, the low one first, off the
// front: zeros for what is missing.
uint8_t take_byte(std::string_view* bytes);
uint16_t take_u16(std::string_view* bytes);
uint32_t take_u32(std::string_view* bytes);

// Takes so many bytes, or what there is.
std::string_view take_bytes(std::string_view* bytes, size_t count);
