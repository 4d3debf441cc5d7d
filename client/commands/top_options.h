// The options of "wificonf top".
#pragma once

#include <string>
#include <vector>

#include "commands/repeat.h"
#include "commands/top_sample.h"

struct top_options {
  repeat_settings repeat;
  top_choice choice;
};

// Parses the words after the command. Default: every BSS, busiest first. False: `error` is one
// line.
bool top_options_read(std::vector<std::string> words, top_options& settings, std::string& error);

// The keys that --sort takes.
std::string top_order_names(const char* separator);
