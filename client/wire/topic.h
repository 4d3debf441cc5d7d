// The subject of a procedure, for people who look for one.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "wire/table.h"

// As headings, such as "Traffic and channel statistics".
std::span<const char* const> topics();

const char* topic_of(const procedure_row& procedure);

// A topic as one word, such as "traffic-and-channel-statistics".
std::string topic_word(const char* topic);

// The topics whose word contains the text, ignoring case, with dashes for blanks. If one is
// exactly the text, only that one.
std::vector<const char*> topics_near(std::string_view text);
