#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "commands/run.h"
#include "wire/xdr.h"

// The whole program, run within the test: what it printed, sent and exited with.

struct run_outcome {
  exit_status status;
  std::string out, err;
  std::vector<byte_string> calls;
};

constexpr uint32_t kMinus1 = 0xffffffff;

run_outcome run_words(const std::vector<std::string>& words);

// Runs the program against a daemon that answers with this state and result.
run_outcome run_against(uint32_t state, const byte_string& result, std::vector<std::string> words,
                        const char* timeout = "10");

// Results as sent: words; or a status, no words, and data.
byte_string words(std::initializer_list<uint32_t> list);
byte_string data_record(uint32_t code, const std::string& data);

bool one_line(const std::string& text);
