// Shared by the tests that run inside a box. Each test has its own fresh mt7603+mt7612
// box.
#pragma once

#include <sys/types.h>
#include <cstdint>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

struct run_result {
  int status;          // exit status, or 128+N for signal N
  std::string output;  // standard output and standard error
};

// Runs a shell command and waits for it.
run_result run(const std::string& command);

// The journal so far, parsed: requests and the like, and what they led to. A line that is not a
// JSON object fails the running test.
std::vector<nlohmann::json> journal_entries();
std::vector<nlohmann::json> journal_effects();

// What `gwbox status --json` says.
nlohmann::json status_now();

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

// Makes the request on a new socket; returns 0 or the errno.
int request(uint32_t number, request_frame& frame);

// Sets a Key=Value text whose announced length includes its terminator; returns 0 or the
// errno.
int set_text(const char* interface, std::string text);
