// What the tests that run inside a box share. Each test has a fresh mt7603+mt7612 box to itself.
#pragma once

#include <sys/types.h>
#include <cstdint>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

struct run_result {
  int status;          // exit status, 128+N for signal N
  std::string output;  // standard output and standard error
};

// Runs a shell command to its end.
run_result run(const std::string& command);

// All lines of the request journal so far, parsed. A line that is no JSON object is a failure of
// the running test.
std::vector<nlohmann::json> journal_entries();

// The wireless request frame of a 64-bit program: name, pointer, length, flags.
struct request_frame {
  char name[16];
  void* pointer;
  uint16_t length;
  uint16_t flags;
  uint32_t padding;
};
static_assert(sizeof(request_frame) == 32);

request_frame make_frame(const char* interface, void* pointer, uint16_t length, uint16_t flags);

// Makes the request on a fresh socket; returns 0 or the errno.
int request(uint32_t number, request_frame& frame);

// A Key=Value text set, announced with its terminator; returns 0 or the errno.
int set_text(const char* interface, std::string text);
